#!/bin/bash
# Whole renders beside Cycles, the path tracer of Blender: the same points, camera and sun, hard shadows, four rays a pixel.
#
#   cycles.sh [--install] [BUILD]      BUILD: build/release
#
# --install fetches Debian's packages blender and python3-numpy, which nothing else here needs. Both programs run in turn, as
# whole processes: start, read the file, build, render, write. A ratio is printed only if both pictures show the same
# silhouette. Times are those of the best of ROUNDS (3) rounds; processor time counts both threads.
set -eu
here=$(cd "$(dirname "$0")" && pwd)
if [ "${1:-}" = --install ]; then
  shift
  apt-get install -y --no-install-recommends blender python3-numpy
fi
bin=${1:-$here/../build/release}/bin
rounds=${ROUNDS:-3}
if ! command -v blender >/dev/null; then
  echo "cycles.sh: Blender is not installed; install it with: $0 --install" >&2
  exit 2
fi
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
TIMEFORMAT='%R %U %S'

scene() { blender -b --python-exit-code 1 --python "$here/cycles_scene.py" -- "$@" >"$folder/blender.log" 2>&1; }
ours() {
  "$bin/kelvra" render "$cloud" --size "${width}x$height" --set point_radius="$radius" --camera 0,130,-190 --target 0,0,-12 \
    --fov 45 --light sun:135,45 --background '#FF00FF' --force -o "$folder/ours.png" >"$folder/kelvra.log" 2>&1
}
theirs() { scene render "$cloud" "$radius" "$width" "$height" "$folder/theirs.png"; }
# Wall and processor seconds of a run; its log if it fails.
measure() {
  { time "$1"; } 2>"$folder/time" || { cat "$folder"/*.log >&2; exit 1; }
  awk 'END { print $1, $2 + $3 }' "$folder/time"
}
least() { awk -v a="$1" -v b="$2" 'BEGIN { print a < b ? a : b }'; }

compare() { # POINTS RADIUS WIDTH HEIGHT
  local points=$1 wall cpu best=(1e9 1e9 1e9 1e9)
  radius=$2 width=$3 height=$4 cloud=$folder/$1.las
  "$bin/make_cloud" "$cloud" --points "$points" >/dev/null
  for ((round = 0; round < rounds; ++round)); do
    read -r wall cpu < <(measure ours)
    best[0]=$(least "$wall" "${best[0]}") best[1]=$(least "$cpu" "${best[1]}")
    read -r wall cpu < <(measure theirs)
    best[2]=$(least "$wall" "${best[2]}") best[3]=$(least "$cpu" "${best[3]}")
  done
  rm "$cloud"
  scene compare "$folder/ours.png" "$folder/theirs.png"
  local same
  same=$(sed -n 's/^same silhouette in \([0-9.]*\).*/\1/p' "$folder/blender.log")
  echo "$points points, radius $radius, ${width}x$height: the silhouette is the same in ${same:-none} of all pixels"
  if awk -v same="${same:-0}" 'BEGIN { exit same >= 0.97 }'; then
    echo "  the pictures differ too much to compare times" >&2
    return 1
  fi
  printf '  %-12s %8.2f s, %8.2f s of processor time\n' kelvra "${best[0]}" "${best[1]}" Cycles "${best[2]}" "${best[3]}"
  awk -v a="${best[0]}" -v b="${best[1]}" -v c="${best[2]}" -v d="${best[3]}" \
    'BEGIN { printf "  kelvra is %.2f times as fast, and takes %.2f times as little processor time\n", c / a, d / b }'
}

compare 1000000 0.25 960 540
compare 10000000 0.07 1280 720
