# The stations of the pages where a program needs more than its own window: a colour is taken from the screen, keys are
# recorded. In the words of scripts/tour; they begin on the sensor page and end on the macro page.

echo "The lighting page"
lighting_page
shot lighting-q1
choose_effect 2
check "the effect is in the mouse's flash" 3 byte_is q1 67 2
hover 780 650
shot lighting-q1-colours
click 640 478
check "a colour from the strip is in the flash" 3 device_says q1 \
    '[.light.red, .light.green, .light.blue] | max == 255 and min == 0 and .[0] > 200 and .[1] > 200' # yellow
hover 780 650
shot lighting-q1-picked
choose_effect 0
check "the light is off, and its effect kept" 3 device_says q1 '.light.on == false and .light.mode == 2'
shot lighting-q1-off
sensor_page

echo "A macro from its name to its file"
macro_page
shot macro-empty
click $new_macro
check "its name is asked for" 3 prompt_shown
shot macro-name
xdotool type --delay 60 "tour"
xdotool key Return
check "the new macro has a file" 3 test -e "$macros/tour.ini"
click $record
for key in w a space; do
    xdotool keydown "$key" sleep 0.06 keyup "$key"
    sleep 0.05
done
shot macro-recording
click $record
click $save_macro
check "what was typed is in the file" 3 macro_holds tour "0x1A 1 0;0x1A 1 1;0x04 1 0;0x04 1 1;0x2C 1 0;0x2C 1 1"
