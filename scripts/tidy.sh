#!/usr/bin/env bash
# Checks the format of our sources with clang-format and the code with clang-tidy.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install_dependencies.sh clang-format clang-tidy
cmake --preset dev >/dev/null
mapfile -t files < <(git ls-files -- '*.cpp' '*.h' ':!res' ':!cmake' ':!fuzz/corpus')
clang-format --dry-run --Werror "${files[@]}"
mapfile -t units < <(git ls-files -- 'sdk/*.cpp' 'source/*.cpp' 'host/*.cpp' 'cli/*.cpp' 'tools/*.cpp' ':!*_windows.cpp' ':!host/gl/without_gl.cpp')
printf '%s\n' "${units[@]}" | xargs -P "$(nproc)" -n 4 clang-tidy -p build/dev --quiet
echo "tidy: ${#files[@]} files are formatted, ${#units[@]} sources are clean"
