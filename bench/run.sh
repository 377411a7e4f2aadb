#!/bin/bash
# Builds and runs all benches; each proves its results before it times them and prints its peer beside it.
#
#   run.sh [FOLDER]      FOLDER for test files, which take up to 3 GB; a temporary one by default
#
# Takes about ten minutes on two quiet cores. The comparison with Cycles is part of it where Blender is installed.
set -eu
cd "$(dirname "$0")/.."
cmake --preset release >/dev/null
cmake --build --preset release --target kelvra_cli kelvra_module make_cloud text_bench las_load_bench convert_bench scene_bench ray_bench
bin=$PWD/build/release/bin
folder=${1:-$(mktemp -d)}
mkdir -p "$folder"
[ $# -gt 0 ] || trap 'rm -rf "$folder"' EXIT

step() {
  printf '\n== %s\n' "$*"
  "$@"
}
for format in las laz; do "$bin/make_cloud" "$folder/bench.$format" --points 5000000; done
step "$bin/text_bench"
step "$bin/las_load_bench" "$folder/bench.las" "$folder/bench.laz"
rm "$folder"/bench.la?
step "$bin/convert_bench"
step "$bin/scene_bench" "$folder"
step "$bin/ray_bench"
if command -v blender >/dev/null; then step bench/cycles.sh; fi
