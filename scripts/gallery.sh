#!/usr/bin/env bash
# Makes the pictures of docs/gallery.md, docs/images/gallery_*.png, with the commands that stand in that page, from clouds
# that are generated here.
#
#   scripts/gallery.sh [PICTURE...]     without names: all of them; a name is a part of the file's
set -euo pipefail
cd "$(dirname "$0")/.."
bin=$(realpath "${KELVRA_BIN:-build/release/bin}")
root=$PWD
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"
"$bin/make_cloud" landscape.laz --points 1500000 --extent 420 --seed 3 --format 7
"$root/tools/make_samples.py" room room.csv
"$root/tools/make_samples.py" knot knot.xyz
made=0
while read -r command; do
  picture=${command##*-o }
  picture=${picture%% *}
  if [ $# -gt 0 ]; then
    wanted=0
    for name in "$@"; do case $picture in *"$name"*) wanted=1 ;; esac; done
    [ $wanted = 1 ] || continue
  fi
  echo "$command"
  PATH=$bin:$PATH bash -c "$command"
  cp "$picture" "$root/docs/images/gallery_$picture"
  made=$((made + 1))
done < <(sed -n 's/^    kelvra /kelvra /p' "$root/docs/gallery.md")
echo "$made pictures"
