#!/bin/bash
# Takes the main window's screenshots on a virtual screen, driving it as a
# user would: type a text and a filter, press Enter to Find, look at one file
# at a time, then ask for a Replace and answer No. Then the same Find in a
# dark palette, and at a scale factor of 2 on the 1280x900 screen.
# Needs: xvfb imagemagick xdotool (apt-get install them).
# Usage: docs/screenshots/take.sh [BUILD_DIR]   (from the repository's root)
source "$(dirname "$0")/setup.sh"
shot() { sleep "$2"; import -window root -crop "${3:-900x700+0+0}" "$out/$1.png"; }

"$root/$build/vantorel" "$root/sample" &
app=$!
sleep 3
shot first-start 0                        # the About box of a first start
xdotool key Return                        # closes it
sleep 1
xdotool mousemove 300 36 click 1          # the Find box
xdotool type --delay 20 'colour'
xdotool mousemove 300 122 click 1         # the file filter
xdotool key ctrl+a
xdotool type --delay 20 '*.txt;*.htm*;*.css'
xdotool key Return                        # Find
shot find-combined-preview 2
xdotool key alt+v Down Down Return        # View > Preview all matches together: off
sleep 0.5
xdotool mousemove 100 200 click 1         # the first row
shot find-single-file-preview 1
xdotool mousemove 300 64 click 1          # the Replace box
xdotool type --delay 20 'color'
xdotool mousemove 133 154 click 1         # Replace: counts, then asks
shot replace-question 2
xdotool key Escape                        # No: nothing is changed
sleep 0.5
kill $app
wait $app 2>/dev/null || true

# The same Find in a dark palette, and at a scale factor of 2 (the filter
# is kept from the run above).
find_again() {  # find_again NAME CROP FIND_BOX_X,Y COMMAND...
  env "${@:4}" "$root/sample" &
  local started=$!
  sleep 3
  xdotool mousemove ${3/,/ } click 1      # the Find box
  xdotool type --delay 20 'colour'
  xdotool key Return                      # Find
  shot "$1" 2 "$2"
  kill $started
  wait $started 2>/dev/null || true
}
find_again find-dark 900x700+0+0 300,36 "$root/$build/docs/screenshots/screenshot_app" --dark
find_again scale-factor-2 1280x900+0+0 300,73 QT_SCALE_FACTOR=2 "$root/$build/vantorel"
