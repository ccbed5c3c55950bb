# Sourced by the screenshot scripts: strict mode, the build folder (the
# script's first argument, default "build"), this folder ($out) and the
# repository's root ($root), and a virtual screen when there is no display
# ($screen before sourcing this sets its size, default 1280x900);
# the programs built; then a temporary folder ($work, removed at the end) holding the settings,
# and the program that shows one tool window alone ($show).
set -euo pipefail
build=${1:-build}
out=$(cd "$(dirname "$0")" && pwd)
root=$(cd "$out/../.." && pwd)
if [ -z "${DISPLAY:-}" ]; then
  exec xvfb-run -a -s "-screen 0 ${screen:-1280x900}x24" "$0" "$@"
fi
# The programs the scripts start, brought up to date.
cmake --build "$root/$build" --target vantorel screenshot_app vantorel-tool-window > /dev/null
work=$(mktemp -d)
export VANTOREL_CONFIG_HOME="$work/config"
trap 'rm -rf "$work"' EXIT
show="$root/$build/docs/screenshots/vantorel-tool-window"
