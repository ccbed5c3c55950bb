#!/bin/bash
# Screenshots of the batch jobs window alone, a job chosen and one of its
# steps selected, driven as a user would. Needs: xvfb imagemagick xdotool
# (apt-get install them).
# Usage: docs/screenshots/take-batch.sh [BUILD_DIR]   (from the repository's root)
source "$(dirname "$0")/setup.sh"
cmake --build "$root/$build" --target vantorel-tool-window > /dev/null
show="$root/$build/docs/screenshots/vantorel-tool-window"
work=$(mktemp -d)
export VANTOREL_CONFIG_HOME="$work/config"
trap 'rm -rf "$work"' EXIT

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
