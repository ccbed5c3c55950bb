#!/bin/bash
# Every window at a scale factor of 2 on a 1280x800 screen, in a light and
# in a dark palette, each opened from the main window as a user would, under
# a window manager (the title bars and frames are part of the fit):
#   scale2-{light,dark}-{about,main,question,options,preview,library,
#   batch,tester,tester-error,tester-error-matches,extract}.png, each the
#   whole screen.
# Needs: xvfb imagemagick xdotool openbox (apt-get install them).
# Usage: docs/screenshots/take-scale2.sh [BUILD_DIR]   (from the repository's root)
screen=1280x800
source "$(dirname "$0")/setup.sh"
openbox > /dev/null 2>&1 &
wm=$!
program="$root/$build/docs/screenshots"
# The library and the batch jobs the windows show, beside the program.
for file in RegEx.txt BatchJobs.txt; do [ -e "$program/$file" ] && mv "$program/$file" "$work/$file.kept"; done
trap 'for f in RegEx.txt BatchJobs.txt; do rm -f "$program/$f"; [ -e "$work/$f.kept" ] && mv "$work/$f.kept" "$program/$f"; done; kill $wm; rm -rf "$work"' EXIT
printf '%s\r\n' $'Digits\t\\d+\t#' $'British spelling\tcolou?r\tcolor' $'Digits  \t[0-9]+\t' \
  $'ISO date to day/month/year\t(\\d{4})-(\\d\\d)-(\\d\\d)\t$3/$2/$1' > "$program/RegEx.txt"
printf '%s\r\n' $'Tidy\tBritish spelling\tDigits' > "$program/BatchJobs.txt"

# A window closing while the screen is read makes import fail: it reads again.
shot() {
  sleep "${2:-1}"
  for _ in 1 2 3; do import -window root "$out/scale2-$palette-$1.png" 2> /dev/null && return; sleep 0.5; done
  return 1
}
up() { xdotool search --sync --onlyvisible --name "$1" > /dev/null; }

for palette in light dark; do
  rm -rf "$VANTOREL_CONFIG_HOME"
  flag=(); [ "$palette" = dark ] && flag=(--dark)
  QT_SCALE_FACTOR=2 "$program/screenshot_app" "${flag[@]}" "$root/sample" &
  app=$!
  up '^About Vantorel$'
  shot about                              # the About box of a first start
  xdotool key Return
  up '^Vantorel$'
  sleep 0.5
  xdotool key ctrl+f
  sleep 0.3
  xdotool type --delay 20 'colour'
  xdotool key Return                      # Find
  shot main 2
  xdotool key alt+p                       # Replace with nothing: the question
  up 'Vantorel'
  shot question
  xdotool key Escape
  xdotool key ctrl+comma
  up '^Options$'
  shot options
  xdotool key Escape
  xdotool key alt+r
  sleep 0.3
  xdotool type --delay 20 'color'
  xdotool key alt+f v                     # File > Preview Replace
  up '^Preview Replace$'
  shot preview 2
  xdotool key Escape
  xdotool key alt+b                       # the library
  up '^Regular Expression Library$'
  xdotool key Down
  shot library
  xdotool key Escape
  xdotool key alt+t Down Return           # Tools > Batch Commands
  up '^Batch Commands$'
  xdotool key Down                        # the saved job
  shot batch
  xdotool key Escape
  xdotool key alt+t Return                # Tools > Regular Expression Tester
  up '^Regular Expression Tester$'
  xdotool type --delay 10 '(?<word>\w+)@(\w+)|(\d+)'
  xdotool key alt+r                       # the labels' access keys lead to the boxes
  xdotool type --delay 10 '<$<word> at $2>$3'
  xdotool key alt+s
  xdotool type --delay 5 'mail ada@example or grace@navy, 2 days'
  xdotool key alt+m                       # the matches, scrolled into view
  shot tester 2
  xdotool key alt+e End
  xdotool type --delay 10 '(['
  shot tester-error 2
  xdotool key alt+m
  shot tester-error-matches 1
  xdotool key alt+F4
  sleep 0.5
  xdotool key alt+g                       # Regular Expression on, then Extract
  xdotool key ctrl+f
  sleep 0.3
  xdotool type --delay 20 'colou?r \w+'
  xdotool key alt+e
  up '^Extracted Text$'
  shot extract 2
  kill $app
  wait $app 2>/dev/null || true
done
