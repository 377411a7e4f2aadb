#!/usr/bin/env bash
# Builds module and program for 64-bit Windows, runs their tests under Wine, and compares the results of both systems
# for the same files.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install_dependencies.sh g++-mingw-w64-x86-64-posix libz-mingw-w64-dev wine64 googletest
# The Linux side of the comparison, and the programs that drive it.
cmake --preset release
cmake --build --preset release -j "$(nproc)" \
  --target kelvra_cli kelvra_module make_cloud picture_difference test_program test_core
cmake --preset windows
cmake --build --preset windows -j "$(nproc)"
ctest --preset windows -j "$(nproc)"
# Makes the package twice: both must hold the same bytes, and the module must load from them.
first=$(./package.sh build/windows)
second=$(./package.sh build/windows)
echo "$first"
[ "$first" = "$second" ] || { echo "test_windows: the package differs from one run to the next: $second" >&2; exit 1; }
