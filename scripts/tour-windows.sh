# The tour under Wine: the programs by the names that they have elsewhere, the user's folder where the tour looks, and
# what is in the registry there. Runs behind the tour's own functions, some of which it replaces.
mkdir -p "$HOME/bin"
for name in halvarion portwirectl; do
    # exec, so that the process is the program's own.
    printf '#!/bin/sh\nexec "%s" "%s" "$@"\n' "$root/scripts/wine" "$bin/$name.exe" >"$HOME/bin/$name"
    chmod +x "$HOME/bin/$name"
done
bin="$HOME/bin"
patience=4 # each look is a program that starts
export WINEPREFIX="$root/build/windows/wine-tour"
user=$("$root/scripts/wine" cmd /c 'echo %USERPROFILE%' 2>/dev/null | tr -d '\r' | sed 's/.*\\//')
folder="$WINEPREFIX/drive_c/users/$user/AppData"
rm -rf "$folder"/Local/{VelkoA,portwire}
ln -s "$folder" "$HOME/AppData"

reg() { "$root/scripts/wine" reg "$@" 2>/dev/null | tr -d '\r'; }
told_of() { sed -nE "s/^ +$1 +REG_SZ +//p"; } # told_of VALUE: its text in what reg query says
mouse_key='HKCU\Software\Velko\Velko\Mouse Drive Test' run_key='HKCU\Software\Microsoft\Windows\CurrentVersion\Run'
reg delete 'HKCU\Software\Velko' /f >/dev/null || true
reg delete "$run_key" /v halvarion /f >/dev/null || true
update_noted() { reg query "$mouse_key" /v UpdateFailInfo | told_of UpdateFailInfo; }
note_update() { reg add "$mouse_key" /v UpdateFailInfo /d "$1" /f >/dev/null; }
starts_with_system() { reg query "$run_key" /v halvarion | told_of halvarion | grep -q 'halvarion.exe$'; }
# Of the size that the system gives it.
file_dialog_shown() { xdotool search --onlyvisible --name '^(FileSave|SelectFile)$' >/dev/null; }
path_there() { echo "Z:$1"; }
place_window() { # by its title, as there is nobody else to move it; in one step, since Wine takes a window for where it was
    local window place x y
    window=$(xdotool search --onlyvisible --name 'Mouse Drive Test' | head -1)
    place=$(xwininfo -id "$window" | sed -n 's/.*Absolute upper-left [XY]: *//p')
    x=$(head -1 <<<"$place") y=$(tail -1 <<<"$place")
    xdotool mousemove $((x + 430)) $((y + 12)) sleep 0.2 mousedown 1 mousemove 430 12 sleep 0.2 mouseup 1
}

# stations_of_the_system: what only this system has.
stations_of_the_system() {
    local tray="1270 890" tray_exit="1177 877" minimise="955 23"
    window_shown() { xdotool search --onlyvisible --name 'Mouse Drive Test' >/dev/null; }
    echo "The tray"
    click $minimise
    check "the window goes" 3 eval '! window_shown'
    import -window root "$shots/tray.png"
    click $tray
    check "it is back" 3 window_shown
    click $minimise
    check "the window goes" 3 eval '! window_shown'
    xdotool mousemove $tray sleep 0.1 click 3 sleep 0.5
    import -window root "$shots/tray-menu.png"
    click $tray_exit
    check "the tray's menu ends the program" 5 eval "! kill -0 $program"

    echo "A scaled screen"
    local scale=('HKCU\Control Panel\Desktop' /v LogPixels)
    # The window has to fit above all: of 150 % it takes what the screen of 1280x900 has room for.
    reg add "${scale[@]}" /t REG_DWORD /d 144 /f >/dev/null
    wineserver -k # who has the desktop already keeps to what it was
    "$bin/halvarion" >>"$log" 2>&1 &
    program=$!
    check "the window is as large as the screen lets it" 20 eval "windows_shown | grep -qE '^1(2[0-7][0-9]|280)x8'"
    sleep 1
    import -window root "$shots/scaled.png"
    kill "$program" && wait "$program" || true
    reg delete "${scale[@]}" /f >/dev/null
    wineserver -k
    start_program
}
