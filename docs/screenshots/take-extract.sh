#!/bin/bash
# Screenshots of the extraction window after an Extract, and of the preview
# exported as rich text, as LibreOffice shows it. Needs: xvfb imagemagick
# xdotool libreoffice-writer-nogui poppler-utils (apt-get install them).
# Usage: docs/screenshots/take-extract.sh [BUILD_DIR]   (from the repository's root)
source "$(dirname "$0")/setup.sh"

"$root/$build/vantorel" "$root/sample" &
app=$!
sleep 3
xdotool key Return                        # closes the About box of a first start
sleep 1
xdotool mousemove 752 36 click 1          # Regular Expression
xdotool mousemove 300 36 click 1          # the Find box (now "Reg Ex:")
xdotool type --delay 20 '[\w.]+@[\w.]+|\d+\.\d\d EUR'
xdotool mousemove 300 120 click 1         # the file filter
xdotool key ctrl+a
xdotool type --delay 20 '*'
xdotool mousemove 305 152 click 1         # Extract
sleep 2
import -window root "$out/extract-window.png"

# The preview, exported through File > Export Match Details...
xdotool key Escape
xdotool mousemove 300 36 click 1
xdotool key ctrl+a
xdotool type --delay 20 'colou?r'
xdotool key Return                        # Find
sleep 2
xdotool key alt+f Down Return             # File > Export Match Details...
sleep 1.5
xdotool type --delay 10 "$work/details.rtf"
xdotool key Return
sleep 1
kill $app
command -v soffice > /dev/null || { echo "soffice is missing: the exported details are not shown" >&2; exit 0; }
(cd "$work" && soffice --headless --convert-to pdf details.rtf > /dev/null 2>&1)
pdftoppm -png -r 80 -f 1 -l 1 "$work/details.pdf" "$work/page"
convert "$work"/page*.png -crop 680x440+0+0 "$out/exported-details-rtf.png"
