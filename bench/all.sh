#!/usr/bin/env bash
# What `make bench` runs: every comparison in one go, each printing its
# figures and ratios. PARTS picks some (default all, in this order):
#   find       Find and Extract against ripgrep and grep, a Replace against
#              grep | sed -i, on the benchmark corpus (run.sh)
#   replace    Replace against grep | sed -i on a copy of /usr/include,
#              recorded for undo and not (replace_speed.sh)
#   batch      a batch job of five steps against its steps one by one and
#              against a one-step Replace (batch_job.sh)
#   firstrow   the window on 100,000 files: time to the first row, stalls,
#              memory (ui_responsiveness.cpp)
#   cold       Find against ripgrep with the page cache dropped (cold_find.sh)
# Each part takes the environment of its script (RUNS, CORPUS, THREADS, ...).
set -uo pipefail
here=$(cd "$(dirname "$0")" && pwd)
build=${BUILD_DIR:-$(dirname "$here")/build}
parts=${PARTS:-find replace batch firstrow cold}
status=0
echo "$(nproc) processors ($(grep -m1 'model name' /proc/cpuinfo | cut -d: -f2 | sed 's/^ //')), $(free -g | awk '/^Mem/ { print $2 }') GB," \
     "disk: $(df --output=source,fstype "$here" | tail -1 | tr -s ' ')"
for part in $parts; do
  echo
  echo "== $part"
  start=$(date +%s)
  case $part in
    find) "$here/run.sh" || status=1 ;;
    replace) "$here/replace_speed.sh" || status=1 ;;
    batch) "$here/batch_job.sh" || status=1 ;;
    firstrow)
      cmake --build "$build" --target ui_responsiveness > /dev/null || { status=1; continue; }
      config=$(mktemp -d)
      QT_QPA_PLATFORM=offscreen VANTOREL_CONFIG_HOME="$config" VANTOREL_UI_FILES=${UI_FILES:-100000} \
        "$build/bench/ui_responsiveness" 2>&1 | grep -E '^(files|second run)|FAIL' || status=1
      rm -rf "$config" ;;
    cold) "$here/cold_find.sh" || status=1 ;;
    *) echo "bench: no part named $part" >&2; status=2 ;;
  esac
  echo "($part: $(( $(date +%s) - start )) s)"
done
exit $status
