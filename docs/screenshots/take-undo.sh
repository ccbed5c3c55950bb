#!/bin/bash
# Screenshots of Preview Replace on a copy of /usr/include and of the question
# that Undo Last Replace asks, driven as a user would: type a text, its
# replacement and a filter, press Preview, choose a file; close the preview,
# Replace and answer Yes, then File > Undo Last Replace... Needs: xvfb
# imagemagick xdotool (apt-get install them).
# Usage: docs/screenshots/take-undo.sh [BUILD_DIR]   (from the repository's root)
source "$(dirname "$0")/setup.sh"
cp -a /usr/include "$work/include"
shot() { sleep "$2"; import -window root -crop 900x700+0+0 "$out/$1.png"; }

"$root/$build/vantorel" "$work/include" &
app=$!
sleep 3
xdotool key Return                        # the About box of a first start
sleep 1
xdotool mousemove 360 36 click 1          # Find
xdotool type --delay 10 'size_t'
xdotool mousemove 360 64 click 1          # Replace
xdotool type --delay 10 'std::size_t'
xdotool mousemove 400 122 click 1         # the file filter
xdotool key ctrl+a
xdotool type --delay 10 'string.h;stdio.h;*alloc*.h'
xdotool mousemove 219 154 click 1         # Preview: counts, then shows the files and their changes
preview=$(xdotool search --sync --onlyvisible --name 'Preview Replace' | head -1)
sleep 2
xdotool mousemove 100 111 click 1         # string.h, the fourth file
sleep 1.5
import -window "$preview" "$out/preview-replace.png"
xdotool key Escape                        # closes the preview: nothing was written
sleep 0.5
xdotool mousemove 133 154 click 1         # Replace: counts and asks
sleep 3
xdotool key alt+y                         # Yes
sleep 4
xdotool key Return                        # Replace Operation Complete
sleep 1
xdotool mousemove 19 8 click 1            # File
sleep 0.7
xdotool mousemove 95 97 click 1           # Undo Last Replace...
shot undo-question 1.5
xdotool key alt+y                         # Yes: the files come back
sleep 3
shot undo-report 0.5
xdotool key Return
kill $app
diff -r --no-dereference /usr/include "$work/include" > /dev/null && echo "the copy is /usr/include again"
