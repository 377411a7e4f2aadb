#!/usr/bin/env bash
# Builds module and program for 64-bit Windows, runs their tests under Wine, and compares what both systems make of the
# same files.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install_dependencies.sh g++-mingw-w64-x86-64-posix libz-mingw-w64-dev wine64 googletest
# What it is compared with, and the programs that drive it.
cmake --preset release
cmake --build --preset release -j "$(nproc)" \
  --target kelvra_cli kelvra_module make_cloud picture_difference test_cli test_net
cmake --preset windows
cmake --build --preset windows -j "$(nproc)"
ctest --preset windows -j "$(nproc)"
# The package, twice: the same bytes, and a module that loads from it.
first=$(./package.sh build/windows)
second=$(./package.sh build/windows)
echo "$first"
[ "$first" = "$second" ] || { echo "test_windows: the package differs from one run to the next: $second" >&2; exit 1; }
