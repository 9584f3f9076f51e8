# The tour under Wine, which has to find the display there when it starts: the programs by the names that they have
# elsewhere, and the user's folder where the tour looks.
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
