#!/bin/bash
# The accessible-tree walk (accessible-tree.py) on a virtual X server with a
# D-Bus session and the AT-SPI accessibility bus of its own. Skipped (exit
# 77) where these cannot be started: Debian packages xvfb, xauth, dbus,
# at-spi2-core and python3-pyatspi.
# Usage: accessible-tree.sh WINDOW_HOST
set -u
here=$(cd "$(dirname "$0")" && pwd)
launcher=""
for candidate in /usr/libexec/at-spi-bus-launcher /usr/lib/at-spi2-core/at-spi-bus-launcher; do
  [ -x "$candidate" ] && launcher=$candidate && break
done
missing=""
command -v xvfb-run > /dev/null || missing="$missing xvfb-run"
for tool in dbus-run-session dbus-send xauth; do command -v $tool > /dev/null || missing="$missing $tool"; done
[ -n "$launcher" ] || missing="$missing at-spi-bus-launcher"
/usr/bin/python3 -c 'import pyatspi' 2> /dev/null || missing="$missing pyatspi"
if [ -n "$missing" ]; then
  echo "SKIP: the accessibility bus cannot be started here (missing:$missing)"
  exit 77
fi
if [ "${1:-}" != "--inside" ]; then
  exec xvfb-run -a -s '-screen 0 1280x800x24' dbus-run-session -- "$0" --inside "$@"
fi
shift
"$launcher" --launch-immediately &
bus=$!
trap 'kill $bus 2> /dev/null' EXIT
# The accessibility bus is up once the launcher answers with its address.
for _ in $(seq 100); do
  dbus-send --session --print-reply --dest=org.a11y.Bus /org/a11y/bus org.a11y.Bus.GetAddress \
    > /dev/null 2>&1 && break
  sleep 0.1
done
export QT_LINUX_ACCESSIBILITY_ALWAYS_ON=1 QT_QPA_PLATFORM=xcb NO_AT_BRIDGE=0
/usr/bin/python3 "$here/accessible-tree.py" "$1"
