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
. tools/window_hands/hands.sh
work=$(mktemp -d)
cd "$work"
export XDG_CONFIG_HOME=$work/config
"$bin/make_cloud" landscape.laz --points 150000
open_window 960x600 "$bin/kelvra" view landscape.laz --size 960x600
trap 'kill "$program" "$server" 2>/dev/null || true; rm -rf "$work"' EXIT

shot loaded
point 180 390 click 1 # Color by Height
point 700 330
shot "$images/window"
key ctrl+z
key ctrl+r
shot rendered
point 640 300 click 1
shot "$images/window_picture"
ls -l "$images"/window*.png
