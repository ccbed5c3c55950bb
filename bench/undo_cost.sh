#!/usr/bin/env bash
# What the undo journal costs a Replace: the same Replace over a fresh copy of
# the benchmark corpus's tree, recorded (as always by default) and not
# (--no-undo), in turn; the median times, and the disk the journal holds
# afterwards (its records, and the old contents that it keeps as second names
# of the replaced files, which no longer free their blocks). Then the time to
# remove one such recorded run, which the journal does once it holds more
# runs than it keeps.
#
# Environment: BUILD_DIR (default build), CORPUS (default bench/corpus-undo),
# FILES (default 30000), RUNS (default 5), THREADS, WORK (where the copies
# go, default $TMPDIR: /dev/shm takes the disk out and leaves the processor's
# share).
# Its own corpus, without the large files, unless CORPUS says otherwise.
CORPUS=${CORPUS:-$(cd "$(dirname "$0")" && pwd)/corpus-undo} BIG_MB=${BIG_MB:-0} RUNS=${RUNS:-5}
source "$(dirname "$0")/common.sh"
work=$(mktemp -d "${WORK:-${TMPDIR:-/tmp}}/vantorel-undo-bench-XXXXXX")
trap 'rm -rf "$work" "$sink"' EXIT
export VANTOREL_CONFIG_HOME="$work/state"

median() { printf '%s\n' "$@" | sort -n | awk '{a[NR]=$1} END {printf "%.3f", a[int((NR+1)/2)]/1000}'; }

on=() off=() on_cpu=() off_cpu=() journal_kb=0 kept_kb=0 written=0 remove_ms=()
for ((i = 0; i < runs; i++)); do
  for mode in on off; do
    # Files deleted a moment ago slow down ext4's choice of new inodes
    # (recently_deleted()): each run starts once the last deletion is older
    # than that.
    rm -rf "$work/tree" "$work/state"; sync; sleep 6; cp -a "$corpus/tree" "$work/tree"; sync
    flag=(); [ "$mode" = off ] && flag=(--no-undo)
    start=$(now)
    /usr/bin/time -f '%U %S' -o "$work/cpu" "$cli" -q $threads -y "${flag[@]}" -d "$work/tree" replace ERROR FAULT \
      > "$work/out" 2>&1 || true
    end=$(now)
    ms=$(( (end - start) / 1000000 ))
    cpu=$(awk '{ printf "%d", ($1 + $2) * 1000 }' "$work/cpu")
    if [ "$mode" = on ]; then
      on+=("$ms")
      on_cpu+=("$cpu")
      run=$(ls -d "$work/state/undo"/*/ | head -1)
      journal_kb=$(du -k "$run/journal" | cut -f1)
      kept_kb=$(du -sk "$run/kept" | cut -f1)
      written=$(ls "$run/kept" | wc -l)
      sync
      start=$(now); rm -rf "$run"; sync; end=$(now)
      remove_ms+=($(( (end - start) / 1000000 )))
    else
      off+=("$ms")
      off_cpu+=("$cpu")
    fi
  done
done
t_on=$(median "${on[@]}")
t_off=$(median "${off[@]}")
echo "files replaced: $written of $(find "$corpus/tree" -type f | wc -l)"
echo "replace, recorded for undo:   ${t_on} s, processor $(median "${on_cpu[@]}") s   (runs: ${on[*]} ms)"
echo "replace, not recorded:        ${t_off} s, processor $(median "${off_cpu[@]}") s   (runs: ${off[*]} ms)"
awk -v a="$t_on" -v b="$t_off" 'BEGIN { printf "cost of the journal: %+.3f s (%+.1f%%)\n", a - b, (a - b) * 100 / b }'
echo "disk held by one recorded run: journal ${journal_kb} KB, kept old contents ${kept_kb} KB"
echo "removing one recorded run:    $(median "${remove_ms[@]}") s"
