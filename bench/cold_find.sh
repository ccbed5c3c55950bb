#!/usr/bin/env bash
# Find over the benchmark corpus with nothing in the page cache: before each
# run the cache is dropped (sync; echo 3 > /proc/sys/vm/drop_caches, which
# needs root), then vantorel-cli and ripgrep take turns. Prints the median
# times and their ratio. Quoted, not asserted: it measures the disk as much
# as the programs.
#
# Environment: see common.sh.
source "$(dirname "$0")/common.sh"
if ! [ -w /proc/sys/vm/drop_caches ]; then
  echo "cold cache: skipped (dropping the page cache needs root)"
  exit 0
fi
cold() { sync; echo 3 > /proc/sys/vm/drop_caches; }
prepare=cold
tv=$(median_time "$cli" -q $threads -d "$corpus" find ERROR)
tr=$(median_time rg --count-matches -uuu -F -e ERROR "$corpus")
echo "cold cache, literal over $corpus ($(du -sm "$corpus" | cut -f1) MB), median of $runs:" \
     "vantorel $tv s, rg $tr s, ratio $(ratio "$tv" "$tr")"
