#!/usr/bin/env bash
# Replace against grep -rlZ | xargs -0 sed -i on a copy of a real source tree
# (default /usr/include): `struct` becomes `STRUCT` in every file that holds
# it. Each run starts from a fresh copy (not timed, flushed to disk first);
# vantorel runs recorded for undo (the default) and with --no-undo, and the
# three take turns, so that all of them see the same state of the machine.
# Prints the median times, the ratios, and whether all three leave the same
# files.
#
# Environment: BUILD_DIR (default build), SOURCE (default /usr/include),
# RUNS (default 3), THREADS, WORK (where the copies go, default $TMPDIR),
# SETTLE (seconds between deleting a copy and making the next, default 11).
set -euo pipefail

here=$(cd "$(dirname "$0")" && pwd)
root=$(dirname "$here")
build=${BUILD_DIR:-$root/build}
cli=${CLI:-$build/vantorel-cli}
source_tree=${SOURCE:-/usr/include}
runs=${RUNS:-3}
threads=${THREADS:+-j $THREADS}
find=${FIND_TEXT:-struct}
replacement=${REPLACEMENT:-STRUCT}
[ -x "$cli" ] || { echo "bench: build first (make)" >&2; exit 2; }
[ -d "$source_tree" ] || { echo "bench: no $source_tree" >&2; exit 2; }

work=$(mktemp -d "${WORK:-${TMPDIR:-/tmp}}/vantorel-replace-bench-XXXXXX")
trap 'rm -rf "$work"' EXIT
export VANTOREL_CONFIG_HOME="$work/config" XDG_STATE_HOME="$work/state"

now() { date +%s%N; }
median() { printf '%s\n' "$@" | sort -n | awk '{a[NR]=$1} END {printf "%.3f", a[int((NR+1)/2)]/1000}'; }
ratio() { awk -v a="$1" -v b="$2" 'BEGIN { if (b > 0) printf "%.2fx", a / b; else print "-" }'; }

# $1: on, off or sed; leaves the result in $work/$1.
one_run() {
  local tree="$work/$1"
  # Files deleted a moment ago slow down ext4's choice of new inodes (for
  # 5 to 10 s, without a journal): the copy is made once the last deletion
  # is older than that.
  rm -rf "$tree" "$work/state"; sync; sleep "${SETTLE:-11}"; cp -a "$source_tree" "$tree"; sync
  local start end
  start=$(now)
  case $1 in
    on) "$cli" -q $threads -y -d "$tree" replace "$find" "$replacement" > /dev/null 2>&1 || true ;;
    off) "$cli" -q $threads -y --no-undo -d "$tree" replace "$find" "$replacement" > /dev/null 2>&1 || true ;;
    sed) grep -rlZ -- "$find" "$tree" | xargs -0 sed -i "s/$find/$replacement/g" ;;
  esac
  end=$(now)
  echo $(( (end - start) / 1000000 ))
}

on=() off=() sed=()
for ((i = 0; i < runs; i++)); do
  on+=("$(one_run on)")
  off+=("$(one_run off)")
  sed+=("$(one_run sed)")
done
t_on=$(median "${on[@]}") t_off=$(median "${off[@]}") t_sed=$(median "${sed[@]}")
changed=$(grep -rl -- "$find" "$source_tree" | wc -l)
echo "replace $find -> $replacement in $changed of $(find "$source_tree" -type f | wc -l) files ($source_tree), median of $runs"
printf '%-28s %8s %10s\n' case seconds "/grep+sed"
printf '%-28s %8s %10s   (runs: %s ms)\n' "vantorel, recorded for undo" "$t_on" "$(ratio "$t_on" "$t_sed")" "${on[*]}"
printf '%-28s %8s %10s   (runs: %s ms)\n' "vantorel --no-undo" "$t_off" "$(ratio "$t_off" "$t_sed")" "${off[*]}"
printf '%-28s %8s %10s   (runs: %s ms)\n' "grep -rlZ | xargs -0 sed -i" "$t_sed" "1.00x" "${sed[*]}"
status=0
for mode in on off; do
  if ! diff -r -q --no-dereference "$work/$mode" "$work/sed" > /dev/null; then echo "DIFFER: vantorel ($mode) and sed leave different trees"; status=1; fi
done
[ $status = 0 ] && echo "all three leave the same files"
exit $status
