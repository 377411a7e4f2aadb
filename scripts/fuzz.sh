#!/usr/bin/env bash
# Builds the fuzz targets with libFuzzer and runs each over its corpus for SECONDS_EACH seconds (60 by default).
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install_dependencies.sh clang libclang-rt-14-dev
cmake --preset fuzz
targets=()
for source in fuzz/*_fuzz.cpp; do targets+=("$(basename "$source" .cpp)"); done
cmake --build --preset fuzz -j "$(nproc)" --target "${targets[@]}"
for target in build/fuzz/bin/*_fuzz; do
  name=$(basename "$target" _fuzz)
  seeds="fuzz/corpus/${name%%_*}"
  work=$(mktemp -d)
  echo "== $name"
  "$target" -max_total_time="${SECONDS_EACH:-60}" -rss_limit_mb=4096 -timeout=20 "$work" "$seeds"
  rm -rf "$work"
done
