#!/usr/bin/env bash
# Makes the pictures of the window in the manual, docs/images/window*.png: runs the program in a virtual display and sends
# it what a user's hands would.
#
#   scripts/view_pictures.sh [PROGRAM_FOLDER]     without a folder: build/release/bin
set -euo pipefail
cd "$(dirname "$0")/.."
bin=$(realpath "${1:-build/release/bin}")
images=$PWD/docs/images
scripts/install_dependencies.sh
work=$(mktemp -d)
program=
server=
finish() {
  [ -z "$program" ] || kill "$program" 2>/dev/null || true
  [ -z "$server" ] || kill "$server" 2>/dev/null || true
  rm -rf "$work"
}
trap finish EXIT

exec {number}<> <(:)
Xvfb -displayfd "$number" -screen 0 960x600x24 >/dev/null 2>&1 &
server=$!
read -r -t 60 -u "$number" display
export DISPLAY=:$display XDG_CONFIG_HOME=$work/config
"$bin/make_cloud" "$work/landscape.laz" --points 40000
cd "$work"
"$bin/kelvra" view landscape.laz --size 960x600 --set load_color=height --exit-after 120 >/dev/null &
program=$!
window=$(xdotool search --sync --onlyvisible --name '^Kelvra$' | tail -1)
sleep 8 # loaded and drawn
picture() {
  rm -f "$work"/kelvra_*.png
  xdotool key --window "$window" F12
  for _ in $(seq 100); do
    if ls "$work"/kelvra_*.png >/dev/null 2>&1; then break; fi
    sleep 0.1
  done
  sleep 0.5
  mv "$work"/kelvra_0001.png "$images/$1"
  echo "docs/images/$1"
}
xdotool windowfocus "$window" mousemove --window "$window" 650 250
picture window.png
xdotool key --window "$window" ctrl+r
sleep "${RENDER_SECONDS:-25}"
xdotool mousemove --window "$window" 600 300 click 1
sleep 6 # explained
picture window_picture.png
