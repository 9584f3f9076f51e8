# The tour on a Wayland desktop: the compositor, and what hands and eyes do differently there.

# Not in HOME: sway refuses to be root, and another user has to get there.
nest=$(mktemp -d -p /tmp)
backdrop=336699

weston_starts() {
    cat >"$nest/weston.ini" <<-END
	[core]
	idle-time=0
	[shell]
	background-color=0xff$backdrop
	panel-position=none
	locking=false
	animation=none
	startup-animation=none
	close-animation=none
	END
    XDG_RUNTIME_DIR=$nest weston --backend=x11-backend.so --width=1280 --height=900 --xwayland \
        --config="$nest/weston.ini" --socket=wayland-tour >"$nest/log" 2>&1 &
    compositor=$!
    until_true 10 grep -q 'xserver listening' "$nest/log"
    until_true 20 pointer_followed || fail "weston follows the mouse"
}
# weston counts where the mouse is from the place where it came in.
pointer_followed() {
    xdotool mousemove 1299 450 sleep 0.1 mousemove 605 405 sleep 0.3
    [[ $(picture_of_windows) =~ \+(59|60).\+(39|40).$ ]]
}
picture_of_windows() { # WIDTHxHEIGHT+X+Y of all that isn't backdrop
    import -window root -crop 1280x900+0+0 +repage png:- | convert png:- -format '%@\n' info:
}

sway_starts() {
    cat >"$nest/config" <<-END
	output * bg #$backdrop solid_color
	output X11-1 resolution 1280x900
	focus_follows_mouse no
	default_border none
	default_floating_border none
	for_window [app_id=".*"] floating enable
	END
    local as_user=()
    if [ "$(id -u)" -eq 0 ]; then
        chown -R nobody "$nest"
        as_user=(setpriv --reuid=nobody --regid=nogroup --clear-groups)
    fi
    HOME=$nest XDG_RUNTIME_DIR=$nest WLR_BACKENDS=x11 WLR_RENDERER=pixman \
        "${as_user[@]}" sway -c "$nest/config" >"$nest/log" 2>&1 &
    compositor=$!
    until_true 10 compgen -G "$nest/sway-ipc*" >/dev/null || fail "sway starts"
    export SWAYSOCK=$(compgen -G "$nest/sway-ipc*")
    until_true 10 eval 'swaymsg -t get_outputs | grep -q X11-1'
}

case $HALVARION_TOUR in
xwayland)
    stories="wayland-story story"
    weston_starts
    # A window of X11 that is gone stays on weston's screen for more than a second, and gets what is meant for the next.
    closing=2
    eyes=$(sed -n 's/.*xserver listening on display //p' "$nest/log")
    environment=(QT_QPA_PLATFORM=xcb "DISPLAY=$eyes" "WAYLAND_DISPLAY=$nest/wayland-tour")
    ;;
sway)
    stories="wayland-story story"
    sway_starts
    environment=(-u DISPLAY QT_QPA_PLATFORM=wayland "WAYLAND_DISPLAY=$(compgen -G "$nest/wayland-?")")
    windows_shown() {
        swaymsg -t get_tree | jq -r --arg program "${1:-$program}" '.. | objects |
            select(.app_id? and .pid == ($program | tonumber)) | .rect | "\(.width)x\(.height) \(.x) \(.y)"'
    }
    ;;
weston)
    stories=wayland-story
    weston_starts
    # The compositor says nothing of its windows, but the program says what it asks for.
    environment=(-u DISPLAY QT_QPA_PLATFORM=wayland "WAYLAND_DISPLAY=$nest/wayland-tour" WAYLAND_DEBUG=1)
    windows_shown() {
        awk -F '[@(), ]+' '
            /wl_display@1.get_registry/ { delete size }
            ! sub(/^.*-> xdg_toplevel@/, "") { next }
            /set_min_size/ { size[$1 + 0] = $2 "x" $3 }
            /destroy/ { delete size[$1 + 0] }
            END { for (id in size) print size[id], 0, 0 }' "$log"
    }
    ;;
esac

# main_place: X Y of the program's window.
main_place() { windows_shown | sed -n 's/^1020x700 //p'; }
[ "$HALVARION_TOUR" != weston ] || main_place() {
    hover 640 450 # wherever the window is, this is in it
    picture_of_windows | sed -n 's/^1020x700+\([0-9]*\)+\([0-9]*\)$/\1 \2/p'
}
main_near() { # main_near X Y: as near as a hand drags it
    local x y
    read -r x y < <(main_place) && [ $((x - $1)) -ge -12 ] && [ $((x - $1)) -le 12 ] &&
        [ $((y - $2)) -ge -12 ] && [ $((y - $2)) -le 12 ]
}
place_window() {
    if [ "$HALVARION_TOUR" = sway ]; then
        swaymsg '[app_id="halvarion" title="Mouse Drive Test"] move absolute position 0 0' >/dev/null
        return
    fi
    # weston lets nothing but the mouse move a window.
    local x y try
    for try in 1 2 3; do
        until_true 5 eval 'read -r x y < <(main_place)' || break
        [ "$x $y" != "0 0" ] || return 0
        drag $((x + 157)) $((y + 64)) 157 64
        sleep 0.3
    done
    fail "the window goes where it is dragged"
}
bring_back() {
    [ "$HALVARION_TOUR" != sway ] || return 0 # it knows no minimising
    xdotool keydown super key Tab
    sleep 0.5
    xdotool keyup super
}
