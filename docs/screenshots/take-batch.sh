#!/bin/bash
# Screenshots of the batch jobs window alone, a job chosen and one of its
# steps selected; then of the main window in batch mode after a Find: a job
# queued through Tools > Batch Commands, the Find and Replace boxes locked.
# Driven as a user would. Needs: xvfb imagemagick xdotool (apt-get install them).
# Usage: docs/screenshots/take-batch.sh [BUILD_DIR]   (from the repository's root)
source "$(dirname "$0")/setup.sh"

printf '%s\r\n' \
  $'Non-breaking spaces\t&nbsp;\t ' \
  $'Tags\t<[^>]+>\t' \
  $'Doubled spaces\t {2,}\t ' \
  $'Trailing spaces\t[ \\t]+$\t' \
  $'British spelling\tcolour\tcolor' > "$work/RegEx.txt"
printf '%s\r\n' \
  $'Tidy HTML export\tNon-breaking spaces\tTags\tDoubled spaces\tTrailing spaces' \
  $'Spelling\tBritish spelling' > "$work/BatchJobs.txt"

window() { xdotool search --sync --onlyvisible --name "$1" | head -1; }

"$show" batch "$work" &
app=$!
id=$(window 'Batch Commands')
xdotool mousemove --window "$id" 270 22 click 1   # the jobs
sleep 0.4
xdotool key Return                                # the first job
sleep 0.3
xdotool mousemove --window "$id" 200 97 click 1   # its second step
sleep 0.7
import -window "$id" "$out/batch-jobs.png"
kill $app
wait $app 2>/dev/null || true

# The main window, a copy of the program beside its own library and jobs.
mkdir "$work/bin"
cp "$root/$build/vantorel" "$work/bin/"
printf '%s\r\n' \
  $'British spelling\tcolour\tcolor' \
  $'Prices\t(\\d+\\.\\d\\d) EUR\tEUR $1' \
  $'Addresses\t[\\w.]+@[\\w.]+\tsomeone@example.org' > "$work/bin/RegEx.txt"
printf '%s\r\n' $'Tidy sample page\tBritish spelling\tPrices\tAddresses' > "$work/bin/BatchJobs.txt"
"$work/bin/vantorel" "$root/sample" &
app=$!
sleep 3
xdotool key Return                        # closes the About box of a first start
sleep 1
xdotool mousemove 300 36 click 1          # the Find box: the window has the keyboard
xdotool key alt+g                         # Regular Expression
xdotool key alt+l ctrl+a                  # the file filter
xdotool type --delay 20 '*.htm*;*.css'
xdotool key alt+t                         # Tools > Batch Commands
sleep 0.5
xdotool key Down Return
sleep 1.5
xdotool key Down                          # the first job
sleep 0.3
xdotool key alt+e                         # Use
sleep 0.7
xdotool mousemove 400 93 click 1          # back in the main window: the folder box
xdotool key alt+i                         # Find
sleep 2
import -window root -crop 900x700+0+0 "$out/batch-mode.png"
kill $app
wait $app 2>/dev/null || true
