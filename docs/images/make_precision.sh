#!/usr/bin/env bash
# Makes precision_off.png and precision_automatic.png: one roof of a landscape in UTM coordinates, stored without a
# local origin and with one. Needs the release build's kelvra and make_cloud.
set -euo pipefail
cd "$(dirname "$0")/../.."
bin=build/release/bin
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
"$bin/make_cloud" "$folder/town.las" --points 2000000 --scale 0.001
for mode in off automatic; do
  "$bin/kelvra" render "$folder/town.las" -o "docs/images/precision_$mode.png" --set "local_origin=$mode" \
    --set point_radius=0.15 --camera -36,24,-12 --target -27,7,6 --fov 34 --size 480x300
done
