#!/usr/bin/env bash
# A saved batch job of five steps against the same five steps run one after
# the other, on the benchmark corpus's tree (bench/make_corpus.cpp): a Find
# of the five, and a Replace of the five on a fresh copy each time (the copy
# is not timed). Prints the median times, their ratio, and whether both ways
# leave the same files. Then the job against one Replace of a single step
# that finds any of the five (and so reads and writes the same files): a job
# reads and writes each file once, whatever its number of steps.
#
# Environment: see common.sh.
source "$(dirname "$0")/common.sh"
tree="$corpus/tree"

work=$(mktemp -d "${TMPDIR:-/tmp}/vantorel-batch-bench-XXXXXX")
trap 'rm -rf "$work" "$sink"' EXIT
# The five steps, as library entries, and the job that runs them.
finds=('colour' 'ERROR ([0-9]+) ms' 'id=([0-9]+)' '\bmalloc\b' 'user=(\w+)@example\.com')
replacements=('color' 'FAULT $1ms' 'ident=$1' 'xmalloc' 'user=$1@example.org')
job_name="Clean up"
job=$job_name
mkdir "$work/data"
for i in "${!finds[@]}"; do
  printf 'step%d\t%s\t%s\r\n' "$i" "${finds[$i]}" "${replacements[$i]}" >> "$work/data/RegEx.txt"
  job+=$(printf '\tstep%d' "$i")
done
printf '%s\r\n' "$job" > "$work/data/BatchJobs.txt"
find "$tree" -type f -exec cat {} + > /dev/null  # the page cache holds the tree

# $1: find or replace; $2: the folder.
separately() {
  for i in "${!finds[@]}"; do
    if [ "$1" = find ]; then "$cli" -q $threads -e -d "$2" find "${finds[$i]}"
    else "$cli" -q $threads -e -y -d "$2" replace "${finds[$i]}" "${replacements[$i]}"; fi
  done
}
as_job() { "$cli" -q $threads -e -y -d "$2" --data-dir "$work/data" --job "$job_name" "$1"; }

echo "$(find "$tree" -type f | wc -l) files, $(du -sm "$tree" | cut -f1) MB ($tree)," \
     "$(nproc) processors, median of $runs"
printf '%-8s %12s %12s %8s\n' case "5 runs" "one job" ratio
t5=$(median_time separately find "$tree")
t1=$(median_time as_job find "$tree")
printf '%-8s %12s %12s %8s\n' find "$t5" "$t1" "$(ratio "$t5" "$t1")"

fresh_copy() { rm -rf "$work/copy"; cp -a "$tree" "$work/copy"; sync; }
prepare=fresh_copy
t5=$(median_time separately replace "$work/copy")
mv "$work/copy" "$work/separately"
t1=$(median_time as_job replace "$work/copy")
printf '%-8s %12s %12s %8s\n' replace "$t5" "$t1" "$(ratio "$t5" "$t1")"
if diff -r -q "$work/separately" "$work/copy" > /dev/null; then echo "both leave the same files"
else echo "DIFFER: the trees differ"; exit 1; fi
rm -rf "$work/separately"

any="colour|ERROR [0-9]+ ms|id=[0-9]+|\\bmalloc\\b|user=\\w+@example\\.com"
one_step() { "$cli" -q $threads -e -y -d "$2" replace "$any" "X"; }
changed() { { diff -r -q "$tree" "$work/copy" || true; } | wc -l; }
t1=$(median_time one_step replace "$work/copy")
w1=$(changed)
tj=$(median_time as_job replace "$work/copy")
wj=$(changed)
printf '%-8s %12s %12s %8s   (files written: %s by the step, %s by the job)\n' "" "one step" "one job" "job/step" "$w1" "$wj"
printf '%-8s %12s %12s %8s\n' replace "$t1" "$tj" "$(ratio "$tj" "$t1")"
