#!/usr/bin/env bash
# Installs what is missing, builds, runs every test and prints ctest's summary.
#
#   ./test.sh            release build
#   ./test.sh --asan     address and undefined-behaviour sanitizers
#   ./test.sh --tsan     thread sanitizer
#   ./test.sh --windows  cross build for Windows, run under Wine and compared with the release build
#   ./test.sh --tidy     clang-format and clang-tidy over our sources, no tests
#   ./test.sh --cluster  renders a sequence on a Slurm cluster that it starts on this computer
#   ./test.sh --fuzz     builds the fuzz targets with libFuzzer and runs each for a minute
set -euo pipefail
cd "$(dirname "$0")"

preset=release
case "${1:-}" in
  "") ;;
  --asan) preset=asan ;;
  --tsan) preset=tsan ;;
  --windows) exec scripts/test_windows.sh ;;
  --tidy) exec scripts/tidy.sh ;;
  --cluster) exec scripts/test_cluster.sh ;;
  --fuzz) exec scripts/fuzz.sh ;;
  *) echo "usage: ./test.sh [--asan | --tsan | --windows | --tidy | --cluster | --fuzz]" >&2; exit 2 ;;
esac

scripts/install_dependencies.sh
cmake --preset "$preset"
cmake --build --preset "$preset" -j "$(nproc)"
ctest --preset "$preset" -j "$(nproc)"
