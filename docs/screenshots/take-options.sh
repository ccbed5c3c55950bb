#!/bin/bash
# Screenshots of the options dialog opened from the main window (Ctrl+,), in
# a light and a dark palette, with the mouse over a button.
# Needs: xvfb imagemagick xdotool.
# Usage: docs/screenshots/take-options.sh [BUILD_DIR]   (from the repository's root)
source "$(dirname "$0")/setup.sh"

shoot() {  # shoot NAME [--dark]
  "$root/$build/docs/screenshots/screenshot_app" "${@:2}" "$root/sample" &
  local app=$!
  sleep 3
  # The About box of a first start, if it is up, closes on Enter.
  if xdotool search --name '^About Vantorel$' >/dev/null 2>&1; then xdotool key Return; sleep 0.5; fi
  xdotool mousemove 300 36 click 1        # the Find box: the window has the keyboard
  xdotool key ctrl+comma
  local window=""
  for _ in $(seq 50); do
    window=$(xdotool search --name '^Options$' 2>/dev/null | head -1) && [ -n "$window" ] && break
    sleep 0.1
  done
  sleep 0.5
  eval "$(xdotool getwindowgeometry --shell "$window")"
  xdotool mousemove --window "$window" 80 "$((HEIGHT - 75))"   # over "Clear Find History"
  sleep 0.3
  import -window root -crop 900x700+0+0 "$out/$1.png"
  kill $app
  wait $app 2>/dev/null || true
}

shoot options-dialog
shoot options-dialog-dark --dark
