#!/usr/bin/env bash
# A saved batch job of five steps against the same five steps run one after
# the other, on the benchmark corpus's tree (bench/make_corpus.cpp): a Find
# of the five, and a Replace of the five on a fresh copy each time (the copy
# is not timed). Prints the median times, their ratio, and whether both ways
# leave the same files.
#
# Environment: BUILD_DIR (default build), CORPUS (default bench/corpus),
# RUNS (default 3), FILES (default 30000), BIG_MB (default 1024), THREADS.
set -euo pipefail

here=$(cd "$(dirname "$0")" && pwd)
root=$(dirname "$here")
build=${BUILD_DIR:-$root/build}
corpus=${CORPUS:-$here/corpus}
runs=${RUNS:-3}
cli="$build/vantorel-cli"
threads=${THREADS:+-j $THREADS}

[ -x "$cli" ] || { echo "bench: build first (make)" >&2; exit 2; }
if [ ! -d "$corpus/tree" ]; then
  echo "Writing the corpus to $corpus ..."
  "$build/bench/vantorel-make-corpus" "$corpus" "${FILES:-30000}" "${BIG_MB:-1024}"
fi
tree="$corpus/tree"

work=$(mktemp -d "${TMPDIR:-/tmp}/vantorel-batch-bench-XXXXXX")
trap 'rm -rf "$work"' EXIT
# The five steps, as library entries, and the job that runs them.
finds=('colour' 'ERROR ([0-9]+) ms' 'id=([0-9]+)' '\bmalloc\b' 'user=(\w+)@example\.com')
replacements=('color' 'FAULT $1ms' 'ident=$1' 'xmalloc' 'user=$1@example.org')
mkdir "$work/data"
job_name="Clean up"
job=$job_name
for i in "${!finds[@]}"; do
  printf 'step%d\t%s\t%s\r\n' "$i" "${finds[$i]}" "${replacements[$i]}" >> "$work/data/RegEx.txt"
  job+=$(printf '\tstep%d' "$i")
done
printf '%s\r\n' "$job" > "$work/data/BatchJobs.txt"

now() { date +%s%N; }
find "$tree" -type f -exec cat {} + > /dev/null  # the page cache holds the tree

# median CMD... : runs a command RUNS times (after PREPARE, untimed), prints the median in seconds.
prepare=:
median() {
  local times=() start end
  for ((i = 0; i < runs; i++)); do
    $prepare
    start=$(now); "$@" > /dev/null 2>&1 || true; end=$(now)
    times+=($(( (end - start) / 1000000 )))
  done
  printf '%s\n' "${times[@]}" | sort -n | awk '{a[NR]=$1} END {printf "%.3f", a[int((NR+1)/2)]/1000}'
}
ratio() { awk -v a="$1" -v b="$2" 'BEGIN { if (b > 0) printf "%.2fx", a / b; else print "-" }'; }

# $1: find or replace; $2: the folder.
separately() {
  for i in "${!finds[@]}"; do
    if [ "$1" = find ]; then "$cli" -q $threads -e -d "$2" find "${finds[$i]}"
    else "$cli" -q $threads -e -y -d "$2" replace "${finds[$i]}" "${replacements[$i]}"; fi
  done
}
as_job() { "$cli" -q $threads -e -y -d "$2" --data-dir "$work/data" --job "$job_name" "$1"; }

files=$(find "$tree" -type f | wc -l)
mb=$(du -sm "$tree" | cut -f1)
echo "$files files, $mb MB ($tree), $(nproc) processors, median of $runs"
printf '%-8s %12s %12s %8s\n' case "5 runs" "one job" ratio
t5=$(median separately find "$tree")
t1=$(median as_job find "$tree")
printf '%-8s %12s %12s %8s\n' find "$t5" "$t1" "$(ratio "$t5" "$t1")"

copy() { rm -rf "$work/copy"; cp -a "$tree" "$work/copy"; sync; }
prepare=copy
t5=$(median separately replace "$work/copy")
mv "$work/copy" "$work/separately"
t1=$(median as_job replace "$work/copy")
printf '%-8s %12s %12s %8s\n' replace "$t5" "$t1" "$(ratio "$t5" "$t1")"
if diff -r -q "$work/separately" "$work/copy" > /dev/null; then echo "both leave the same files"
else echo "DIFFER: the trees differ"; exit 1; fi
