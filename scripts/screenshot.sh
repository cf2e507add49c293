#!/usr/bin/env bash
# Takes a screenshot of kolvane-studio on the VAV example, a filter typed and the numeric dialog
# of nciMinSetpt open, on a virtual X display: ./scripts/screenshot.sh [docs/studio.png]
set -euo pipefail
cd "$(dirname "$0")/.."
out=${1:-docs/studio.png}
KOLVANE_EXTRA_PACKAGES="xvfb xauth xdotool imagemagick openbox" ./scripts/setup.sh
cmake --preset release >/dev/null
cmake --build --preset release --target kolvane_studio >/dev/null

display=:${KOLVANE_DISPLAY:-93}
Xvfb "$display" -screen 0 1320x800x24 -nolisten tcp &
xvfb=$!
studio=
wm=
trap 'kill $studio $wm $xvfb 2>/dev/null || true' EXIT
export DISPLAY=$display QT_QPA_PLATFORM=xcb
for _ in $(seq 50); do xdotool getdisplaygeometry >/dev/null 2>&1 && break; sleep 0.1; done
# A window manager draws the title bars (the unsaved mark, the dialog's caption).
openbox >/dev/null 2>&1 &
wm=$!
sleep 0.5

./build/release/app/studio/kolvane-studio examples/profile-vav.xml &
studio=$!
window=$(xdotool search --sync --name "Kolvane Studio" | head -n 1)
xdotool windowmove "$window" 0 0 windowsize "$window" 1320 770 windowactivate --sync "$window"
sleep 0.5
# As a user with the keyboard: Ctrl+F, a filter typed, then into the properties pane and Enter
# on the item found.
xdotool key ctrl+f
xdotool type --delay 40 Setpt
sleep 0.3
xdotool key Tab Tab Down Return
xdotool search --sync --name "Numeric Value" >/dev/null
sleep 0.3
xdotool type --delay 40 19.5
sleep 0.3
mkdir -p "$(dirname "$out")"
import -window root "$out"
echo "screenshot: $out"
