#!/bin/bash
# A manual page says what its program's --help says, and groff finds nothing
# to warn about in it.
#   ManualTest.sh PROGRAM PAGE.1.gz
set -euo pipefail
program=$1 page=$2

if ! command -v groff >/dev/null; then
    echo "groff is not installed: skipped"
    exit 0
fi
[[ -f $page ]] || { echo "no manual page $page"; exit 1; }

warnings=$(zcat "$page" | groff -man -ww -z -Tutf8 2>&1) || true
if [[ -n $warnings ]]; then
    printf 'groff warns about %s:\n%s\n' "$page" "$warnings"
    exit 1
fi

# The manual as plain text, one line, without hyphenation.
manual=$(zcat "$page" | groff -man -Tascii -P-cbou -rHY=0 -rLL=200n 2>/dev/null | tr -s ' \n' '  ')

# Each option (with its description) and each paragraph of --help, its
# lines joined, must be in the manual as it is.
missing=0
while IFS= read -r entry; do
    if [[ $manual != *"$entry"* ]]; then
        printf 'not in the manual page: %s\n' "$entry"
        missing=1
    fi
done < <("$program" --help | awk '
    function flush() { if (entry != "") print entry; entry = "" }
    /^(Usage:|  or: )/ { next }
    /^$/ { flush(); next }
    /^[^ ].*:$/ { flush(); next }                  # a heading
    /^ +-/ && !/^          / { flush() }          # an option
    { line = $0; sub(/^ +/, "", line); gsub(/ +/, " ", line)
      entry = entry == "" ? line : entry " " line }
    END { flush() }')
exit $missing
