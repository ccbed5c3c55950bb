#!/usr/bin/env bash
# Runs vantorel-cli against ripgrep, GNU grep (-r and -rP) and grep | sed -i
# on one corpus, in one go: median times, ratios to each peer, and a check
# that the match counts agree.
#
# Environment: see common.sh.
for tool in rg grep sed xargs /usr/bin/time; do
  command -v "$tool" >/dev/null || { echo "bench: $tool is missing (make bench installs it)" >&2; exit 2; }
done
source "$(dirname "$0")/common.sh"
# Warm the page cache so that every tool reads from memory.
cat "$corpus"/big/* > /dev/null 2>&1 || true
find "$corpus/tree" -type f -exec cat {} + > /dev/null

vantorel_count() { { "$cli" -q $threads "$@" 2>&1 || true; } | sed -n 's/.* \([0-9][0-9]*\) occurences \(found\|changed\) in .*/\1/p' | head -1; }
rg_count() { { rg --count-matches -uuu "$@" || true; } | awk -F: '{ s += $NF } END { print s + 0 }'; }

printf '%-26s %9s %9s %9s %9s   %-8s %-8s %-8s %s\n' case vantorel rg grep grep-P "/rg" "/grep" "/grep-P" counts
status=0
find_case() {
  local name=$1 icase=$2 regex=$3 pattern=$4
  local vflags=() rflags=() gflags=() pflags=()
  [ "$icase" = i ] && { vflags+=(-i); rflags+=(-i); gflags+=(-i); pflags+=(-i); }
  [ "$regex" = e ] && vflags+=(-e) || { rflags+=(-F); gflags+=(-F); }
  local tv tr tg tp cv cr
  tv=$(median_time "$cli" -q $threads "${vflags[@]}" -d "$corpus" find "$pattern")
  tr=$(median_time rg --count-matches -uuu "${rflags[@]}" -e "$pattern" "$corpus")
  tg=$(median_time grep -rc "${gflags[@]}" -e "$pattern" "$corpus")
  tp=$(median_time grep -rcP "${pflags[@]}" -e "$pattern" "$corpus")  # the literals have no metacharacters
  cv=$(vantorel_count "${vflags[@]}" -d "$corpus" find "$pattern")
  cr=$(rg_count "${rflags[@]}" -e "$pattern" "$corpus")
  local agree="agree ($cv)"
  [ "$cv" = "$cr" ] || { agree="DIFFER: vantorel $cv, rg $cr"; status=1; }
  printf '%-26s %9s %9s %9s %9s   %-8s %-8s %-8s %s\n' "$name" "$tv" "$tr" "$tg" "$tp" \
    "$(ratio "$tv" "$tr")" "$(ratio "$tv" "$tg")" "$(ratio "$tv" "$tp")" "$agree"
}

find_case "literal" - - "ERROR"
find_case "case-insensitive literal" i - "error"
find_case "regex, literal part" - e "id=[0-9]{4,}"
find_case "regex, no literal part" - e "[A-Z]{2}[0-9]{3}"
find_case "very many matches" - - "the"
find_case "no match" - - "zqxjkvbw"

# Extract: the text of every match.
tv=$(median_time "$cli" -q $threads -e -d "$corpus" extract "id=[0-9]+")
tr=$(median_time rg -o -N -uuu --no-filename -e "id=[0-9]+" "$corpus")
tg=$(median_time grep -rho -e "id=[0-9]\+" "$corpus")
tp=$(median_time grep -rhoP -e "id=[0-9]+" "$corpus")
cv=$("$cli" -q $threads -e -d "$corpus" extract "id=[0-9]+" 2>/dev/null | wc -l)
cr=$(rg -o -N -uuu --no-filename -e "id=[0-9]+" "$corpus" | wc -l)
agree="agree ($cv)"; [ "$cv" = "$cr" ] || { agree="DIFFER: vantorel $cv, rg $cr"; status=1; }
printf '%-26s %9s %9s %9s %9s   %-8s %-8s %-8s %s\n' "extract" "$tv" "$tr" "$tg" "$tp" \
  "$(ratio "$tv" "$tr")" "$(ratio "$tv" "$tg")" "$(ratio "$tv" "$tp")" "$agree"

# Replace, each run on a fresh copy; the copy is not timed.
work=$(mktemp -d "${TMPDIR:-/tmp}/vantorel-bench-XXXXXX")
trap 'rm -rf "$work" "$sink"' EXIT
fresh_copy() { rm -rf "$copy"; cp -a "$corpus" "$copy"; sync; }
time_on_copy() {
  copy=$1; shift
  prepare=fresh_copy
  median_time "$@"
}
tv=$(time_on_copy "$work/v" "$cli" -q $threads -y -d "$work/v" replace ERROR FAULT)
ts=$(time_on_copy "$work/s" sh -c "grep -rlZ ERROR '$work/s' | xargs -0 sed -i 's/ERROR/FAULT/g'")
if diff -r -q "$work/v" "$work/s" > /dev/null; then agree="same files"; else agree="DIFFER: the trees differ"; status=1; fi
printf '%-26s %9s %9s %9s %9s   %-8s %-8s %-8s %s\n' "replace (vs grep | sed -i)" "$tv" "-" "$ts" "-" \
  "-" "$(ratio "$tv" "$ts")" "-" "$agree"

# Peak memory while searching the large file alone.
big=$(ls "$corpus"/big/* 2>/dev/null | head -1)
if [ -n "$big" ]; then
  size_kb=$(( $(stat -c %s "$big") / 1024 ))
  peak_kb=$(/usr/bin/time -f %M "$cli" -q -d "$(dirname "$big")" find ERROR 2>&1 >/dev/null | tail -1)
  echo
  echo "peak memory searching $(basename "$big") ($((size_kb / 1024)) MB): $((peak_kb / 1024)) MB ($(ratio "$peak_kb" "$size_kb") of its size)"
fi
exit $status
