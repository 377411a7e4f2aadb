#!/usr/bin/env bash
# Installs what is missing, builds, and shows a real laser scan: rendered, in the viewport, thinned, with falloff, as
# clones, saved as a scene and converted. Give it files (LAS, LAZ, XYZ, PTS, folders, a scene) to show those instead.
#
#   ./demo.sh [FILE...]      results go to out/
set -euo pipefail

# File names are relative to the caller's folder.
files=()
for file in "$@"; do files+=("$(realpath -m -- "$file")"); done
cd "$(dirname "$0")"

scripts/install_dependencies.sh
cmake --preset release
cmake --build --preset release -j "$(nproc)" --target kelvra_cli kelvra_module make_cloud
kelvra=build/release/bin/kelvra
mkdir -p out

if [ ${#files[@]} -eq 0 ]; then
  if sample=$(scripts/fetch_sample.sh); then
    files=("$sample")
  else
    echo "The sample scan could not be downloaded from CRAN; using a generated landscape instead."
    files=(out/generated.xyz)
    if build/release/bin/make_cloud out/generated.laz --points 400000; then files=(out/generated.laz); else
      build/release/bin/make_cloud "${files[0]}" --points 400000
    fi
  fi
fi

status=0
written=()
# Runs one command; a file that loaded only in part, or not at all, makes the script fail at its end, not here.
show() {
  local output=$1
  shift
  "$kelvra" "$@" -o "$output" || status=$?
  if [ -e "$output" ]; then written+=("$output"); fi
}

echo "== What is in the files"
"$kelvra" info "${files[@]}" || status=$?

echo "== Pictures"
rm -f out/*.png out/*.scene out/points.ply out/lines.obj
show out/view.png snapshot "${files[@]}"
show out/view_height.png snapshot "${files[@]}" --set load_color=height --set ramp=terrain --legend
show out/view_classes.png snapshot "${files[@]}" --set load_color=class --legend
show out/view_plan.png snapshot "${files[@]}" --view top --ortho --size 1024x1024
show out/view_own_colors.png snapshot "${files[@]}" --set point_size=5 --set color_mode=0
show out/view_inverted_height.png snapshot "${files[@]}" --set point_size=5 --set color_mode=5 --set color_invert=1
show out/view_from_north.png snapshot "${files[@]}" --set point_size=5 --camera 0,150,225 --target 0,-8,0
show out/view_thinned.png snapshot "${files[@]}" --set point_size=5 --set thin_view=8
show out/view_falloff.png snapshot "${files[@]}" --set point_size=8 --set falloff_action=2 --set falloff_radius=120
show out/render.png render "${files[@]}" --ground
show out/view_clones.png snapshot "${files[@]}" --set point_size=2 --clones 3x1x3:215

echo "== A scene that holds the points"
show out/demo.scene save "${files[@]}"
show out/view_scene.png snapshot out/demo.scene --set point_size=3
show out/view_again.png snapshot "${files[@]}" --set point_size=3
if cmp -s out/view_again.png out/view_scene.png; then
  echo "out/demo.scene reopens with the same picture"
else
  echo "out/demo.scene gives a DIFFERENT picture than out/view_again.png" >&2
  status=1
fi

echo "== Converted to the application's own geometry"
show out/points.ply convert "${files[@]}" --mode point
show out/lines.obj convert "${files[@]}" --mode spline
"$kelvra" convert "${files[@]}" --mode hair --scene out/hair.scene || status=$?
show out/hair.png snapshot out/hair.scene

echo "== A generated landscape in colour"
build/release/bin/make_cloud out/landscape.xyz --points 600000 >/dev/null
show out/landscape.png render out/landscape.xyz --view iso --fit 1.15 --light sun:150,35 --light ambient:0.4 \
  --background '#262d35'

echo "== Written"
ls -l "${written[@]}"
echo "The picture to begin with: out/landscape.png"
exit "$status"
