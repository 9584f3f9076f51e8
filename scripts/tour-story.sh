# The stations of the tour, in the words of scripts/tour.

echo "First start: two devices"
start_program
shot chooser-two
hover $Q1
shot chooser-hover

echo "Plug-in to a setting on the mouse"
click $Q1
connected wait-prompt
shot button-page
sensor_page
shot sensor-q1
click $rate_500
check "500 Hz is in the mouse's flash" 3 byte_is q1 0 2
shot sensor-q1-500
check "the mouse itself polls at 500 Hz" 1 device_says q1 '.rate == 500'
stop_program $device_close
start_program
check "500 Hz is still there" 2 byte_is q1 0 2
click $Q1
connected
sensor_page
shot sensor-q1-again

echo "Asleep and awake again"
ctl sleep q1 >/dev/null
click $rate_1000
check "the offline prompt comes" 3 prompt_shown
shot offline-prompt
check "nothing reached the sleeping mouse" 1 byte_is q1 0 2
ctl wake q1 >/dev/null
check "it goes by itself, and the wait for the new record too" 25 no_prompt_follows
shot sensor-q1-awake

echo "DPI by hand and by the mouse's own button"
drag 258 182 500 182
check "the dragged DPI is what the mouse uses" 3 device_says q1 '.level == 2 and .dpi > 10000 and .dpi < 16000'
shot sensor-q1-dragged
ctl dpi q1 4 >/dev/null
check "the mouse's button changes its level" 2 device_says q1 '.level == 4'
shot sensor-q1-level-5

. "$root/scripts/tour-pages.sh"

echo "Buttons: a function, a combination, a macro"
button_page
click $(row 1)
check "the last left button has to stay" 3 prompt_shown
shot button-left-stays
click_prompt $prompt_close
hover $(row 3)
shot button-hover
click $(row 5)
choose_function "$media_keys"
shot button-media-keys
click $first_of_list
check "the mouse opens the player" 3 press_says q1 3 'any(.type == "consumer" and .code == 387)'
click $(row 3)
choose_function "$combination"
check "the keys are asked for" 3 prompt_shown
click_prompt 103 88
xdotool key Escape
sleep 0.2
shot button-combination
click_prompt 91 123
check "the mouse presses Ctrl and Esc" 3 press_says q1 2 'map(select(.action == "press").code) == [1, 41]'
click $(row 6)
choose_function "$fire_key"
check "interval and count are asked for" 3 dialog_shown 406x170
shot button-fire-key
xdotool key Return
click $(row 6)
choose_function "$dpi_lock"
shot button-dpi-lock
click $first_of_list
check "the lock is in the mouse's flash" 3 byte_is q1 89 10
click $(row 4)
choose_function "$macro_function"
shot button-macros
click $first_of_list
check "the mouse plays the macro" 3 press_says q1 4 'map(select(.action == "press").code) == [26, 4, 44]'
shot button-assigned
macro_page
click 240 167
click 560 219
shot macro-row
click $amend
check "the new delay or key is asked for" 3 prompt_shown
shot macro-amend
click_prompt $prompt_close
hover 860 413
click 860 413
shot macro-insert
xdotool key Escape
click 240 167
xdotool click 3
shot macro-menu
xdotool key Escape
click $delete_macro
check "to delete is asked again" 3 prompt_shown
shot macro-delete
xdotool key Return
check "the file is gone" 3 test ! -e "$macros/tour.ini"
check "and the button does what it did from the factory" 3 press_says q1 4 'any(.type == "button" and .code == 8)'
sensor_page

echo "The cable takes over"
ctl plug q1 >/dev/null
check "the wait prompt comes" 5 prompt_shown
check "the wait prompt goes" 15 no_prompt_follows
shot sensor-q1-corded
ctl unplug q1 >/dev/null
sleep 2
shot chooser-after-cable

echo "The other mouse"
click $Q2
connected
shot button-page-q2
sensor_page
shot sensor-q2
lighting_page
shot lighting-q2
receiver=$(receiver_of q2)
ctl unplug "$receiver" >/dev/null
sleep 2
shot chooser-one

echo "A sleeping mouse"
ctl plug "$receiver" >/dev/null
ctl sleep q2 >/dev/null
sleep 2
shot chooser-offline
click $Q2
sleep 2
check "no wait prompt for a sleeping mouse" 1 no_prompt
sensor_page
shot sensor-q2-offline
ctl wake q2 >/dev/null
sleep 3
back
sleep 1

. "$root/scripts/tour-settings.sh"

echo "Languages"
for index in 1 2 3 4 5 0; do
    language $index
    shot "chooser-language-$index"
done
for index in 1 4; do
    language $index
    click $Q1
    connected "wait-prompt-language-$index"
    click $(row 2)
    choose_function "$media_keys"
    shot "button-language-$index"
    sensor_page
    shot "sensor-language-$index"
    lighting_page
    shot "lighting-language-$index"
    macro_page
    shot "macro-language-$index"
    sensor_page
    ctl sleep q1 >/dev/null
    click $rate_1000
    check "the offline prompt comes" 3 prompt_shown
    shot "offline-prompt-language-$index"
    ctl wake q1 >/dev/null
    check "it goes by itself, and the wait for the new record too" 25 no_prompt_follows
    back
    sleep 1.5
done
language 0

echo "A receiver that is older than its mouse"
ctl remove q2 >/dev/null
ctl sleep q1 >/dev/null
image receiver.bin receiver HALVARION-R4 9.1
sleep 1.5
xdotool key space
check "the update is offered" 3 prompt_shown
shot receiver-is-older
xdotool key Return
sleep 0.5
check "the repair is ready" 3 prompt_shown
shot receiver-update
ctl fault q1-4k powerloss 60 >/dev/null
ctl latency q1-4k 1 >/dev/null
click_prompt $prompt_confirm
check "the update goes on, and is noted" 3 unfinished 211,4,18,1
shot receiver-updating
check "it loses its power" 40 device_says q1-4k '.plugged == false'
sleep 11
shot receiver-failed
click_prompt $prompt_confirm
sleep 0.5
shot chooser-repair
stop_program $chooser_close
start_program
for index in 1 4 0; do
    language $index
    shot "chooser-repair-language-$index"
    click $repair
    check "the repair opens" 3 prompt_shown
    shot "repair-language-$index"
    click_prompt $prompt_confirm
    sleep 0.5
    shot "repair-no-device-language-$index"
    xdotool key Escape
    sleep $closing
done
ctl plug q1-4k >/dev/null
xdotool key Return
check "the repair opens by the keyboard, too" 3 prompt_shown
ctl latency q1-4k 1 >/dev/null
xdotool key Return
sleep 0.3
xdotool key Escape
shot repair-progress
check "there is no way out of it" 1 prompt_shown
check "the receiver has the new firmware" 30 device_says q1-4k '.mode == "normal" and .firmware == "9.1"'
check "and nothing is unfinished any more" 3 finished
sleep 0.5
shot repair-done
xdotool key Return
sleep 1.5
shot chooser-repaired

echo "A mouse whose update broke off"
ctl wake q1 >/dev/null
image mouse.bin mouse HALVARION-Q1 9.2
ctl plug q1 >/dev/null
ctl boot q1 >/dev/null
sleep 1.5
stop_program $chooser_close
# What the program notes when it begins; the buttons of the settings page that begin an update are hidden.
note_update 210,4,18,1
start_program
click $repair
check "the repair opens" 3 prompt_shown
click_prompt $prompt_confirm
check "the mouse has the new firmware" 30 device_says q1 '.mode == "normal" and .firmware == "9.2"'
check "and nothing is unfinished any more" 3 finished
xdotool key Return
sleep 1.5
ctl unplug q1 >/dev/null
sleep 1.5
click 512 380
connected
check "its settings are what they were" 1 byte_is q1 0 2
settings_page
shot settings-updated
back
sleep 1.5
rm -rf "$images"
[ "$(add q2 1k)" = q2 ] || fail "the other mouse is back"

echo "More devices"
added=()
for device in "q1 1k" "q1 2k" "q2 2k" "q2 4k" "unknown cable"; do
    added+=("$(add $device)")
    sleep 0.2
done
sleep 1.5
shot chooser-seven
click 988 383
shot chooser-seven-middle
click 988 383
shot chooser-seven-last
for id in "${added[@]}"; do ctl remove "$id" >/dev/null; done
sleep 1.5
unknown=$(add unknown cable)
sleep 1.5
shot chooser-three-with-unknown
ctl remove "$unknown" >/dev/null
first=$(add q1 cable)
second=$(add q1 cable)
check "two of one model bring the notice" 5 prompt_shown
shot chooser-duplicates
ctl remove "$first" >/dev/null
ctl remove "$second" >/dev/null
check "the notice goes with the cause" 5 no_prompt
for id in $(ctl devices | jq -r .[].id); do ctl remove "$id" >/dev/null 2>&1 || true; done
sleep 1.5
shot chooser-none

echo "A second start"
env "${environment[@]}" "$bin/halvarion" >>"$log" 2>&1 &
second=$!
check "it says that one runs" 10 prompt_shown "$second"
shot second-start
xdotool key Return
check "and ends" 5 eval "! kill -0 $second"
stations_of_the_system
stop_program $chooser_close
