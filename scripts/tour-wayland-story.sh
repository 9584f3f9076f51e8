# The stations where a Wayland desktop is different, in the words of scripts/tour and scripts/tour-wayland.sh.

nobody_looks() { device_says q1 '.program == false'; }
somebody_looks() { device_says q1 '.program == true'; }
answers_asleep() { # answers_asleep PICTURE: a click while the mouse sleeps, and the prompt of that by the keyboard
    ctl sleep q1 >/dev/null
    click $rate_500
    check "the offline prompt comes" 3 prompt_shown
    shot "$1"
    xdotool key Return
    check "and goes by the keyboard" 3 no_prompt_follows
    ctl wake q1 >/dev/null
    sleep 2
    check "the mouse is read again" 15 no_prompt_follows
}

echo "Dragged by its picture"
start_program
drag 157 64 257 114
check "the window goes where it is dragged" 3 main_near 100 50
place_window
click $Q1
connected wayland-wait-prompt

echo "Minimised without a tray"
sensor_page
click 955 20
check "the mouse is told that nobody looks" 3 nobody_looks
sleep 1.5
bring_back
check "and that somebody looks again" 3 somebody_looks
answers_asleep wayland-after-minimising
click 955 20
check "a second time, too" 3 nobody_looks
sleep 1.5
bring_back
check "and back" 3 somebody_looks

echo "A second start"
first=$program first_log=$log
log="$shots/second.log"
env "${environment[@]}" "$bin/halvarion" >"$log" 2>&1 &
program=$!
check "the second copy says that one runs" 5 prompt_shown
shot wayland-second-copy
xdotool key Return
if until_true 5 eval '! kill -0 '"$program"; then echo "  ok: it ends"; else fail "it ends"; fi
wait "$program" || fail "it ends with status 0"
program=$first log=$first_log
check "the first one goes on" 1 somebody_looks

if [ "$HALVARION_TOUR" = weston ]; then
    . "$root/scripts/tour-pages.sh"
    check "the colour came from the window, and the log says so" 1 grep -q 'colour is what the window draws' "$log"
    back
    sleep 1.5
    for index in 1 4 0; do
        language $index
        shot "chooser-language-$index"
        click $Q1
        connected "wait-prompt-language-$index"
        sensor_page
        answers_asleep "offline-prompt-language-$index"
        back
        sleep 1.5
    done
    stop_program $chooser_close
else
    stop_program $device_close
fi
