#!/usr/bin/env bash
# Builds the soak and runs it on three small clouds: LAZ, XYZ and PTS. Exit 0 when nothing grew.
#
#   tools/soak/run.sh [CYCLES]     1,000 unless it says otherwise
set -euo pipefail
cd "$(dirname "$0")/../.."
cmake --preset release > /dev/null
cmake --build --preset release --target soak make_cloud kelvra_module
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
for suffix in laz xyz pts; do
  build/release/bin/make_cloud "$folder/cloud.$suffix" --points 20000
done
build/release/bin/soak "${1:-1000}" "$folder"/cloud.*
