#!/usr/bin/env bash
# Kills a Replace (kill -9) at random moments and checks, each time, that
# every file holds either its old or its new contents, byte for byte, and
# that none is missing; then kills the `undo` of it at a random moment too,
# checks the same, and that `undo` run again takes every written file back
# to its old contents (the journal agrees with the files). Not a timing.
#
# Environment: BUILD_DIR (default build), SOURCE (default /usr/include/linux),
# TRIALS (default 20), LONGEST (the latest moment of the kill, in ms,
# default 400), WORK (where the copies go, default $TMPDIR).
set -euo pipefail

here=$(cd "$(dirname "$0")" && pwd)
build=${BUILD_DIR:-$(dirname "$here")/build}
cli=${CLI:-$build/vantorel-cli}
source_tree=${SOURCE:-/usr/include/linux}
trials=${TRIALS:-20}
longest=${LONGEST:-400}
[ -x "$cli" ] || { echo "bench: build first (make)" >&2; exit 2; }
work=$(mktemp -d "${WORK:-${TMPDIR:-/tmp}}/vantorel-kill-trial-XXXXXX")
trap 'rm -rf "$work"' EXIT
export VANTOREL_CONFIG_HOME="$work/config" XDG_STATE_HOME="$work/state"

cp -a "$source_tree" "$work/old"
cp -a "$source_tree" "$work/new"
"$cli" -q -y --no-undo -d "$work/new" replace struct STRUCT > /dev/null 2>&1 || true
(cd "$work/old" && find . -type f | sort) > "$work/files"

# Every listed file of $1 is the old or the new one; prints how many are new.
check() {
  local tree=$1 new=0 line
  while IFS= read -r line; do
    if cmp -s "$tree/$line" "$work/new/$line"; then
      cmp -s "$tree/$line" "$work/old/$line" || new=$((new + 1))
    elif ! cmp -s "$tree/$line" "$work/old/$line"; then
      echo "FAULT: $line is neither old nor new" >&2
      return 1
    fi
  done < "$work/files"
  echo "$new"
}

faults=0
for ((t = 1; t <= trials; t++)); do
  rm -rf "$work/tree" "$work/state"
  cp -a "$work/old" "$work/tree"
  at=$((RANDOM % longest))
  "$cli" -q -y -d "$work/tree" replace struct STRUCT > /dev/null 2>&1 &
  pid=$!
  sleep "$(awk -v ms="$at" 'BEGIN { printf "%.3f", ms / 1000 }')"
  kill -9 "$pid" 2> /dev/null || true
  wait "$pid" 2> /dev/null || true
  if ! written=$(check "$work/tree"); then faults=$((faults + 1)); continue; fi
  undoAt=$((RANDOM % (longest / 2 + 1)))
  "$cli" -y undo > /dev/null 2>&1 &
  pid=$!
  sleep "$(awk -v ms="$undoAt" 'BEGIN { printf "%.3f", ms / 1000 }')"
  kill -9 "$pid" 2> /dev/null || true
  wait "$pid" 2> /dev/null || true
  if ! halfway=$(check "$work/tree"); then faults=$((faults + 1)); continue; fi
  "$cli" -y undo > /dev/null 2>&1 || true
  if ! left=$(check "$work/tree"); then faults=$((faults + 1)); continue; fi
  [ "$left" = 0 ] || { echo "FAULT: undo left $left files new (killed at $at ms)" >&2; faults=$((faults + 1)); }
  echo "trial $t: Replace killed at $at ms with $written files new; its undo killed at $undoAt ms with $halfway" \
       "still new; undo again took them all back"
done
echo "$trials trials, $faults faults"
[ "$faults" = 0 ]
