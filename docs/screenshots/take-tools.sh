#!/bin/bash
# Screenshots of the expression library and the regular expression tester,
# each shown alone and driven as a user would. Needs: xvfb imagemagick
# xdotool (apt-get install them).
# Usage: docs/screenshots/take-tools.sh [BUILD_DIR]   (from the repository's root)
source "$(dirname "$0")/setup.sh"

printf '%s\r\n' \
  $'Digits\t\\d+\t' \
  $'E-mail address\t([\\w.+-]+)@([\\w-]+\\.[\\w.-]+)\t$1 at $2' \
  $'Trailing spaces\t[ \\t]+$\t' \
  $'ISO date to day/month/year\t(\\d{4})-(\\d\\d)-(\\d\\d)\t$3/$2/$1' \
  $'Doubled words\t\\b(\\w+)\\s+\\1\\b\t$1' > "$work/RegEx.txt"
cat > "$work/sample.txt" <<'TEXT'
Orders received on 2024-03-18
  ada.lovelace@example.org    3 x Analytical Engine   1843.00 EUR
  charles.babbage@example.com 12 x Difference Engine    99.50 EUR
  grace@navy.example          1 x Compiler               7.25 EUR
Please confirm by 2024-03-22 to the the address above.
Contact: support@vantorel.example (reply within 2 days)
TEXT

window() { xdotool search --sync --onlyvisible --name "$1" | head -1; }
shot() { sleep 0.7; import -window "$(window "$1")" "$out/$2.png"; }

# The library, an entry chosen.
"$show" library "$work" &
app=$!
id=$(window 'Regular Expression Library')
xdotool mousemove --window "$id" 80 64 click 1   # the second entry
shot 'Regular Expression Library' library
kill $app

# The tester: matches marked in the sample, the third one's groups.
"$show" tester "$work" "$work/sample.txt" &
app=$!
id=$(window 'Regular Expression Tester')
xdotool mousemove --window "$id" 400 23 click 1   # Reg Ex
xdotool type --delay 15 '(?<user>[\w.]+)@(?<host>[\w.]+)|(\d+\.\d\d) EUR'
xdotool mousemove --window "$id" 400 73 click 1   # Replace
xdotool type --delay 15 '<$<user> at $<host>>$3'
sleep 0.5
xdotool mousemove --window "$id" 60 461 click 1   # the third match in the list
shot 'Regular Expression Tester' tester-matches

# An invalid expression: the list says so, the box points at the place, the
# replaced text stays as it was.
xdotool mousemove --window "$id" 400 23 click 1 key End
xdotool type --delay 15 '[A-Z+'
shot 'Regular Expression Tester' tester-invalid
kill $app
