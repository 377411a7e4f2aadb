#!/usr/bin/env bash
# Makes kelvra-<version>-win64.zip, which holds the folder Kelvra for the application's plug-in folder. The same sources
# give the same bytes. Then unpacks the zip and loads its module under Wine.
#
#   ./package.sh [WINDOWS_BUILD_FOLDER]     without a folder it builds the preset windows
#   ./package.sh --deb                      makes out/kelvra_<version>_amd64.deb for Debian instead, and checks it
set -euo pipefail
cd "$(dirname "$0")"
[ "${1:-}" != --deb ] || exec scripts/debian_package.sh "${2:-}"
scripts/install_dependencies.sh g++-mingw-w64-x86-64-posix libz-mingw-w64-dev wine64 googletest zip unzip
build=${1:-build/windows}
if [ $# -eq 0 ]; then
  cmake --preset windows
  cmake --build --preset windows -j "$(nproc)" --target kelvra_cli kelvra_module kelvra_resources
fi
fail() { echo "package: $*" >&2; exit 1; }

version=$(sed -n 's/^project(kelvra VERSION \([0-9.]*\).*/\1/p' CMakeLists.txt)
[ -n "$version" ] || fail "CMakeLists.txt: no version found"
# The time of every file: the caller's, or that of the commit.
epoch=${SOURCE_DATE_EPOCH:-$(git log -1 --format=%ct)}
export SOURCE_DATE_EPOCH=$epoch # strip writes it into its output
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
folder=$work/Kelvra
mkdir -p "$folder/licences" out

cp "$build/bin/kelvra.cdl64" "$build/bin/kelvra.exe" "$folder"
x86_64-w64-mingw32-strip "$folder/kelvra.cdl64" "$folder/kelvra.exe"
cp -r res "$folder/res"
# The manual with the pictures that it shows.
cp docs/manual.md "$folder"
for picture in $(grep -o '](images/[^)]*)' docs/manual.md | sed 's/^](//; s/)$//' | sort -u); do
  install -D -m 644 "docs/$picture" "$folder/$picture"
done

cp LICENSE "$folder/licences/kelvra.txt"
package=${KELVRA_RLAS:-$(find build/deps -name 'rlas_*.tar.gz' | sort -V | tail -1)}
[ -n "$package" ] || fail "build/deps holds no rlas_*.tar.gz, whose notices belong in the package"
mkdir "$work/rlas"
tar -xzf "$package" -C "$work/rlas"
{
  echo "LASlib (GNU Lesser General Public License 2.1) and LASzip (Apache License 2.0), linked statically into"
  echo "kelvra.cdl64. Their sources: $(basename "$package") from CRAN; what is needed to link against another"
  echo "LASlib is in Kelvra's own repository. Of the package only the folders src/LASlib and src/LASzip are compiled;"
  echo "its GPL-3 files are those of the R package around them, and none of them is linked. What the package says of itself and of them:"
  for name in DESCRIPTION LICENSE LICENSE.note COPYING inst/COPYRIGHTS inst/COPYRIGHT; do
    [ ! -f "$work/rlas/rlas/$name" ] || { printf '\n== %s\n\n' "$name"; cat "$work/rlas/rlas/$name"; }
  done
  for source in LASlib/lasreader.hpp LASzip/laszip.hpp; do
    printf '\n== The notice in %s\n\n' "$source"
    sed -n '1,/\*\//p' "$work/rlas/rlas/src/$source"
  done
} >"$folder/licences/laslib_laszip.txt"
for name in LGPL-2.1 Apache-2.0; do
  cp "/usr/share/common-licenses/$name" "$folder/licences/$name.txt" || fail "this machine lacks the text of $name"
done
notice() { # name, then the files that may hold it
  local name=$1 file
  shift
  for file in "$@"; do
    if [ -f "$file" ]; then cp "$file" "$folder/licences/$name.txt"; return; fi
  done
  fail "no notice for $name: looked for $*"
}
notice zlib /usr/share/doc/libz-mingw-w64-dev/copyright
notice gcc_runtime /usr/share/doc/gcc-mingw-w64-x86-64-posix-runtime/copyright /usr/share/doc/gcc-mingw-w64-base/copyright
notice mingw_w64_runtime /usr/share/doc/mingw-w64-x86-64-dev/copyright /usr/share/doc/mingw-w64-common/copyright
notice cli11 /usr/share/doc/libcli11-dev/copyright
notice nlohmann_json /usr/share/doc/nlohmann-json3-dev/copyright
notice xxhash /usr/share/doc/libxxhash-dev/copyright

# Sorted entries, one time, and the rights and owners of plain files.
find "$work/Kelvra" -type d -exec chmod 755 {} + -o -type f -exec chmod 644 {} +
find "$work/Kelvra" -exec touch -h -d "@$epoch" {} +
zip=$PWD/out/kelvra-$version-win64.zip
rm -f "$zip"
(cd "$work" && find Kelvra -type f | LC_ALL=C sort | TZ=UTC zip -X -q -9 "$zip" -@)

# It must work unpacked elsewhere, without anything from this folder.
test_folder=$work/"ein Ordner ü"
mkdir "$test_folder"
unzip -q "$zip" -d "$test_folder"
printf '1 2 3\n4 5 6\n7 8 9\n' >"$test_folder/drei 点.xyz"
said=$(cd "$test_folder" && XDG_CONFIG_HOME="$work/settings" "$OLDPWD/scripts/wine.sh" Kelvra/kelvra.exe info "drei 点.xyz" 2>&1) ||
  fail "the unpacked module does not load: $said"
case "$said" in *"3 points"*) ;; *) fail "the unpacked module did not load 3 points: $said" ;; esac
[ -s "$test_folder/Kelvra/manual.md" ] && [ -s "$test_folder/Kelvra/res/c4d_symbols.h" ] || fail "manual or resources are missing"
echo "$(sha256sum "$zip" | cut -d' ' -f1)  ${zip#"$PWD"/} ($(stat -c %s "$zip") bytes, $(unzip -Z1 "$zip" | wc -l) files)"
