#!/usr/bin/env bash
# Runs the same jobs with the Linux program and with kelvra.exe under Wine and compares the results: scenes, exported
# points and converted geometry byte for byte; pictures may differ by one step of 8 bits, and by more in one pixel of ten
# thousand.
#
#   windows_end_to_end.sh LINUX_BIN WINDOWS_BIN
set -euo pipefail
linux_bin=$(realpath "$1")
windows_bin=$(realpath "$2")
root=$(cd "$(dirname "$0")/.." && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
mkdir "$work/Vermessung Süd 点" "$work/settings"
cd "$work/Vermessung Süd 点"
export XDG_CONFIG_HOME=$work/settings KELVRA_GEOMETRY_SERVICE= KELVRA_UPDATE_SERVER=

checks=0
fail() { echo "windows_end_to_end: $*" >&2; exit 1; }
on_linux() { "$linux_bin/kelvra" "$@"; }
on_windows() { "$root/scripts/wine.sh" "$windows_bin/kelvra.exe" "$@"; }
# Both systems run one job; OUT in its words becomes l.* and w.* files. The results must not depend on file names.
same() {
  local suffix=$1 status_l=0 status_w=0
  shift
  rm -f "l.$suffix" "w.$suffix"
  on_linux "${@//OUT/l.$suffix}" >l.out 2>l.err || status_l=$?
  on_windows "${@//OUT/w.$suffix}" >w.out 2>w.err || status_w=$?
  [ "$status_l" = "$status_w" ] || fail "status $status_l and $status_w of: $* ($(cat l.err w.err))"
  [ "$status_l" = 0 ] || fail "$(cat l.err)"
  checks=$((checks + 1))
}
same_bytes() {
  same "$@"
  [ -s "l.$1" ] || fail "no output from: $*"
  cmp "l.$1" "w.$1" || fail "different bytes from: $*"
}
same_picture() {
  same "$@"
  "$linux_bin/picture_difference" "l.$1" "w.$1" || fail "different pictures from: $*"
}
# Compares what a command prints, without times, speeds, memory and the separator of folders.
same_words() {
  same none "$@"
  for side in l w; do
    tr -d '\r' <"$side.out" |
      sed -E 's#\\+#/#g; s/[0-9.]+ s, [0-9.]+ [kM]? ?points\/s//g; s/, memory .*//; s/; resident .*//' >"$side.words"
  done
  cmp l.words w.words || fail "different output from: $* $(diff l.words w.words)"
}

make="$linux_bin/make_cloud"
"$make" "Straße 1.las" --points 40000 --format 2 >/dev/null
"$make" "Straße 2.laz" --points 40000 --format 7 --seed 2 --east 350000 --north 5600000 >/dev/null
"$make" "点群.xyz" --points 20000 --columns 6 --seed 3 >/dev/null
"$make" "lüneburg.pts" --points 20000 --seed 4 --east 691000.5 >/dev/null
printf '1.0000000000000000000001 -0x1.8p3 +.5e1\n1e-400 3 0x\n-nan 1 1\n0.1 123456789012345678901234567890e-20 7\n' >"odd numbers.xyz"
mkdir "Ordner ü"
cp "Straße 1.las" "点群.xyz" "Ordner ü"

for file in "Straße 1.las" "Straße 2.laz" "点群.xyz" "lüneburg.pts" "Ordner ü"; do
  same_words info "$file"
  # A scene stores the paths of its sources, which for a folder contain the system's separator: only the export is compared.
  if [ -d "$file" ]; then same scene save "$file" -o OUT; else same_bytes scene save "$file" -o OUT; fi
  same_bytes txt export "$file" -o OUT
  # A scene from one system opens on the other.
  mv l.scene linux.scene
  mv w.scene windows.scene
  for scene in linux.scene windows.scene; do
    same_bytes txt export $scene -o OUT
    same_words scene --json $scene
  done
  for mode in point hair particles emitter spline; do same_words convert linux.scene --mode $mode --ratio 0.2; done
  # A converted cloud in its own scene renders on the other system.
  same_bytes scene convert linux.scene --mode point --ratio 0.5 --scene OUT
  mv w.scene converted.scene
  same_picture png render converted.scene -o OUT --size 480x270
  same_bytes ply convert linux.scene --mode point -o OUT
  same_bytes obj convert windows.scene --mode spline --ratio 0.2 -o OUT
  same_picture png render windows.scene -o OUT --size 480x270
done
same_picture 16.png render "Straße 1.las" -o OUT --size 64x48 --depth 16 --supersample 1
same_picture png render "Straße 1.las" "Straße 2.laz" -o OUT --size 480x270 --light sun:200,30 --set point_radius=1.5 --set transparency=0.4

# Numbers that the systems' own libraries would read differently; one line is rejected, so both exit with 1.
status=0; on_linux export "odd numbers.xyz" -o l.txt >l.out 2>&1 || status=$?
other=0; on_windows export "odd numbers.xyz" -o w.txt >w.out 2>&1 || other=$?
[ $status = $other ] || fail "status $status and $other for odd numbers"
cmp l.txt w.txt || fail "odd numbers are read differently"

# Commands that need what this build lacks say so and fail.
status=0; on_windows snapshot "Straße 1.las" -o view.png >w.out 2>w.err || status=$?
[ $status = 1 ] && [ "$(grep -c 'not available in this build' w.err)" = 1 ] && [ ! -e view.png ] || fail "snapshot: status $status, $(cat w.err)"
for suffix in tif exr; do
  status=0; on_windows render "Straße 1.las" -o picture.$suffix >w.out 2>w.err || status=$?
  [ $status != 0 ] && [ ! -e picture.$suffix ] && grep -q "picture.$suffix: " w.err || fail "$suffix: status $status, $(cat w.err)"
done

echo "windows_end_to_end: $checks jobs gave the same results on both systems"
