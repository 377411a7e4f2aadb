#!/usr/bin/env bash
# Makes the manual's pictures of the viewport from a generated landscape, and the README's picture, which is the last one
# of demo.sh in a smaller size. Needs the release build's kelvra and make_cloud.
set -euo pipefail
cd "$(dirname "$0")/../.."
bin=build/release/bin
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
"$bin/make_cloud" "$folder/town.las" --points 400000
snapshot() {
  local name=$1 size=$2
  shift 2
  "$bin/kelvra" snapshot "$folder/town.las" -o "docs/images/$name.png" --size "$size" "$@"
}
snapshot view 720x360 --view iso --fit 1.2
snapshot height 480x300 --set load_color=height --legend
snapshot classes 480x300 --set load_color=class --legend
snapshot falloff 480x300 --set falloff_action=scale --set falloff_radius=120 --set point_size=5
"$bin/make_cloud" "$folder/landscape.xyz" --points 600000
"$bin/kelvra" render "$folder/landscape.xyz" -o docs/images/landscape.png --size 760x380 --view iso --fit 1.15 \
  --light sun:150,35 --light ambient:0.4 --background '#262d35'
