# The stations of the device as a whole: all settings in one file, the settings page, pairing. In the words of
# scripts/tour; they begin and end on the chooser with the two mice of the first start.

import_profile="827 191" export_profile="934 191" factory_reset="880 227"
settings_page() { click 572 75; hover 600 690; }
pair_button="280 344" start_with_system="628 342" long_range="212 471" light_battery="212 631"
answer_file() { xdotool key ctrl+a; xdotool type --delay 20 "$(path_there "$1")"; xdotool key Return sleep $closing; }
pairing_shown() { dialog_shown 458x242; }
holds() { ctl record "$1" | cmp -s - "$2"; }
file_holds() { [ "$(stat -c %s "$1")" = 10464 ] && tail -c 10428 "$1" | cmp -s - "$2"; }
profile="$HOME/tour.bin" broken="$HOME/broken.bin" before="$HOME/before"

# import_broken NAME: a file that is none is refused; leaves a picture of that.
import_broken() {
    click $import_profile
    check "a file is asked for" 3 file_dialog_shown
    shot "$1-file"
    answer_file "$broken"
    sleep 5.5 # the wait comes first
    shot "$1-refused"
    xdotool key Return
    check "it is refused" 3 no_prompt_follows
}

echo "All settings in one file"
click $Q1
connected
ctl record q1 >"$before"
click $export_profile
check "a name for the file is asked for" 3 file_dialog_shown
shot profile-export
answer_file "$profile"
check "all settings are in the file" 3 file_holds "$profile" "$before"
head -c 100 "$profile" >"$broken"
click $factory_reset
check "the reset is asked about" 3 prompt_shown
xdotool key Return
connected profile-reset-wait
check "the mouse is as from the factory" 3 press_says q1 4 'any(.type == "button" and .code == 8)'
shot profile-after-reset
click $import_profile
check "a file is asked for" 3 file_dialog_shown
answer_file "$profile"
connected profile-import-wait
check "every byte is as before" 5 holds q1 "$before"

echo "The settings page"
settings_page
shot settings-4k
click $long_range
check "the receiver has long range on" 3 device_says q1-4k .longRange
click $light_battery
check "its light shows the battery" 3 device_says q1-4k '.light.mode == 2'
ctl receiver-light q1-4k 3 >/dev/null
xdotool mousemove 600 500 click --repeat 10 --delay 20 5
shot settings-4k-scrolled
xdotool click --repeat 10 --delay 20 4
click $start_with_system
check "it starts with the system" 3 starts_with_system
ctl sleep q1 >/dev/null
click $long_range
check "the offline prompt comes" 3 prompt_shown
shot settings-offline
ctl wake q1 >/dev/null
check "it goes by itself, and the wait for the new record too" 25 no_prompt_follows
check "the receiver still has long range on" 1 device_says q1-4k .longRange
ctl plug q1 >/dev/null
check "the wait prompt comes" 5 prompt_shown
check "the wait prompt goes" 15 no_prompt_follows
shot settings-corded
click $pair_button
check "the pairing dialog comes" 3 pairing_shown
shot pairing-corded
xdotool key space Escape
ctl unplug q1 >/dev/null
sleep 2
click $Q2
connected
settings_page
shot settings-1k
back
sleep 1.5

echo "Pairing with a new receiver, and back"
middle_of_three="507 380" last_of_three="807 380"
ctl add receiver 2k q1 >/dev/null
sleep 1.5
shot chooser-new-receiver
click $middle_of_three
sleep 1
settings_page
shot settings-2k
pair_with() { # pair_with RECEIVER: the dialog by the space bar, the start too
    xdotool key space
    check "the pairing dialog comes" 3 pairing_shown
    xdotool key space
    check "the receiver looks for a mouse" 3 device_says "$1" .pairing
    ctl pairing q1 >/dev/null
    check "it finds the mouse" 3 device_says "$1" '.mouse == "q1"'
    sleep 0.5
    xdotool key Escape
    check "the mouse is read" 25 no_prompt_follows
}
pair_with q1-2k
shot settings-2k-paired
back
sleep 1.5
click $last_of_three
sleep 1
settings_page
pair_with q1-4k
back
ctl remove q1-2k >/dev/null
sleep 2

for index in 0 1 4; do
    echo "The device as a whole, language $index"
    language $index
    click $Q1
    connected
    click $factory_reset
    check "the reset is asked about" 3 prompt_shown
    shot "profile-reset-language-$index"
    xdotool key Escape
    import_broken "profile-language-$index"
    settings_page
    shot "settings-language-$index"
    click $pair_button
    check "the pairing dialog comes" 3 pairing_shown
    shot "pairing-language-$index"
    xdotool key space sleep 1.3
    shot "pairing-goes-on-language-$index"
    ctl pairing q1 >/dev/null
    sleep 1
    shot "pairing-done-language-$index"
    xdotool key Escape
    check "the mouse is read" 25 no_prompt_follows
    click $pair_button
    check "the pairing dialog comes" 3 pairing_shown
    xdotool key space sleep 0.5
    ctl unplug q1-4k >/dev/null
    sleep 2
    shot "pairing-failed-language-$index"
    xdotool key Escape
    ctl plug q1-4k >/dev/null
    sleep 2
done
language 0
