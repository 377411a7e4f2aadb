#!/bin/sh
# Do two builds give the same pictures, byte for byte?
#
#   same_pictures.sh BUILD FOLDER CLOUD...     BUILD: folder with kelvra, kelvra.so and res
#
# Renders small scenes of every kind that rays treat in their own way. A picture that FOLDER lacks is kept there; one that
# it has is compared. So run it with the old build first, then with the new one. Ends with 1 if a picture differs.
set -eu
build=$1 folder=$2
shift 2
mkdir -p "$folder"
new=$(mktemp -d)
trap 'rm -rf "$new"' EXIT
different=0

picture() { # NAME, then options and files
  kept=$folder/$(basename "$cloud")-$1.exr
  name=$1
  shift
  "$build/kelvra" render "$@" --size 200x112 --depth 32 -o "$new/$name.exr" >/dev/null
  if [ ! -e "$kept" ]; then
    mv "$new/$name.exr" "$kept"
    echo "kept       $name"
  elif cmp -s "$kept" "$new/$name.exr"; then
    echo "same       $name"
  else
    echo "DIFFERENT  $name"
    different=1
  fi
}

sun='--light sun:135,40'
for cloud in "$@"; do
  echo "$cloud"
  # shellcheck disable=SC2086
  {
    picture opaque "$cloud" $sun
    picture small "$cloud" $sun --set point_radius=0.05
    picture hard-edge "$cloud" $sun --set edge_bias=1
    picture soft-edge-ground "$cloud" $sun --set edge_bias=0.03 --ground
    picture half-transparent "$cloud" --light point:20,60,-30:2 --set transparency=0.5
    picture fog "$cloud" $sun --set transparency=0.95 --set point_radius=0.8
    picture more-hits-than-kept "$cloud" $sun --set transparency=0.9995 --set point_radius=6
    picture almost-as-many "$cloud" $sun --set transparency=0.9 --set point_radius=2.5
    picture soft-depth "$cloud" $sun --ground --set soft_depth=2 --set point_radius=1.2
    picture hidden-from-mirror "$cloud" $sun --ground --ground-mirror 0.6 --set seen_reflection=0
    picture varied-radius-mirror "$cloud" $sun --ground --ground-mirror 0.6 --set radius_variation=0.9
    picture twice "$cloud" "$cloud" $sun --set transparency=0.3 --set point_radius=0.9
    picture without-light "$cloud" --set light=0 --set light_flat=0 --set transparency=0.8
    picture inside "$cloud" $sun --camera 1,3,-2 --target 40,2,35
    picture far-away "$cloud" $sun --camera 90000,60000,-90000 --target 0,0,0 --fov 1
  }
done
exit $different
