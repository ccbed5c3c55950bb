# Sourced by the benchmark scripts: strict mode, the folders, the corpus
# (written the first time), and timing helpers.
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

now() { date +%s%N; }
# Output goes to a file, not /dev/null: GNU grep stops at its first match
# when it sees that its output is thrown away.
sink=$(mktemp "${TMPDIR:-/tmp}/vantorel-bench-out-XXXXXX")
trap 'rm -f "$sink"' EXIT

# median_time CMD... : runs the command RUNS times, prints the median in
# seconds. The command `prepare` (default none) runs untimed before each run.
prepare=:
median_time() {
  local times=() start end
  for ((i = 0; i < runs; i++)); do
    $prepare
    start=$(now); "$@" > "$sink" 2>&1 || true; end=$(now)
    times+=($(( (end - start) / 1000000 )))
  done
  printf '%s\n' "${times[@]}" | sort -n | awk '{a[NR]=$1} END {printf "%.3f", a[int((NR+1)/2)]/1000}'
}

ratio() { awk -v a="$1" -v b="$2" 'BEGIN { if (b > 0) printf "%.2fx", a / b; else print "-" }'; }
