#!/usr/bin/env bash
# Renders a sequence on a real Slurm cluster, made of this computer alone, and compares it with one rendered without.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install_dependencies.sh slurmctld slurmd slurm-client munge procps
. scripts/loopback_cluster.sh

cmake --preset release
cmake --build --preset release -j "$(nproc)" --target kelvra_cli kelvra_module make_cloud
kelvra=$PWD/build/release/bin/kelvra
folder=$(mktemp -d)
trap 'cluster_stop; rm -rf "$folder"' EXIT
passed=0 failed=0

# check WHAT COMMAND...: counts whether the command succeeds.
check() {
  local what=$1
  shift
  if "$@"; then
    echo "ok: $what"
    passed=$((passed + 1))
  else
    echo "FAILED: $what" >&2
    failed=$((failed + 1))
  fi
}
frames() { find "$folder/$1" -name 'frame_*.png' | wc -l; }
has_frames() { [ "$(frames "$1")" -ge "$2" ]; }
same_frames() {
  local i
  for i in $(seq -w 00 19); do cmp "$folder/alone/frame_$i.png" "$folder/$1/frame_$i.png" || return 1; done
}
# sequence OUT ARGUMENTS...: 20 frames of a turn into that folder.
sequence() {
  local out=$1
  shift
  mkdir -p "$folder/$out"
  "$kelvra" sequence "$folder/scan.laz" --turntable 20 -o "$folder/$out/frame_##.png" "$@" \
    -- --size 240x136
}
job_of() { grep -o '"jobs":.*' "$folder/$1/frame.sequence/jobs.json"; }
has_begun_on() { grep -qs "start on $1" "$folder"/lost/frame.sequence/*.log; }

build/release/bin/make_cloud "$folder/scan.laz" --points 200000
sequence alone --local
cluster_start "$folder/cluster"

# One part for each node, so that the lost one is still busy with its only part.
sequence lost --slurm --chunk 10 >"$folder/lost.txt" 2>&1 &
following=$!
cluster_wait 60 has_begun_on node2 && cluster_wait 60 has_frames lost 1 || { cat "$folder/lost.txt" >&2; exit 1; }
echo "ending node2 with $(frames lost) of 20 frames rendered"
cluster_lose node2
status=0
wait $following || status=$?
cat "$folder/lost.txt"
check "a sequence ends well although a node is lost" [ $status -eq 0 ]
check "its frames are those of one machine, byte for byte" same_frames lost
two_starts() { grep -l 'start on node2' "$folder"/lost/frame.sequence/*.log | xargs grep -lq 'start on node1'; }
check "the part of the lost node was begun again elsewhere" two_starts

sequence left --slurm --chunk 2 >"$folder/left.txt" 2>&1 &
following=$!
cluster_wait 60 has_frames left 2
kill -INT "$(pgrep --parent $following)" # the program itself
status=0
wait $following || status=$?
job=$(job_of left)
check "a sequence that is left goes on without the program" [ $status -eq 1 -a -n "$(squeue --noheader)" ]
sequence left --slurm --chunk 2 >"$folder/left.txt" 2>&1
check "the same command follows the same job" [ "$(job_of left)" = "$job" ]
check "and finds the same frames" same_frames left
rm "$folder/left/frame_07.png"
printf 'x' | dd of="$folder/left/frame_11.png" bs=1 seek=900 conv=notrunc status=none
kept=$(stat --format=%Y.%i "$folder/left/frame_08.png")
sequence left --slurm --chunk 2 >"$folder/left.txt" 2>&1
check "only missing and damaged frames are rendered again" \
  [ "$(grep -c '18 frames of 20 already there' "$folder/left.txt") $(stat --format=%Y.%i "$folder/left/frame_08.png")" = "1 $kept" ]
check "and are the same again" same_frames left

mkdir "$folder/bad"
status=0
"$kelvra" sequence "$folder/scan.laz" --frames 3-4 -o "$folder/bad/frame_#.png" --slurm --fault allocation=60:100000 \
  >"$folder/bad.txt" 2>&1 || status=$?
cat "$folder/bad.txt"
named() { grep -q "frames 3-4: not made in 3 tries on node1.*part_0.log" "$folder/bad.txt"; }
check "a part that fails three times is reported with frames, node and log" named
check "and ends the sequence with status 1" [ $status -eq 1 ]

mkdir "$folder/survey"
for name in north south west; do build/release/bin/make_cloud "$folder/survey/$name.laz" --points 3000 >/dev/null; done
"$kelvra" sequence --each "$folder/survey" --do "info --json" -o "$folder/survey.json" --chunk 1 --slurm
check "one command a file gives one JSON" python3 - "$folder/survey.json" <<'PYTHON'
import json, sys
files = json.load(open(sys.argv[1]))["files"]
sys.exit([f["output"]["points"] for f in files] != [3000] * 3)
PYTHON

echo "$passed passed, $failed failed"
[ $failed -eq 0 ]
