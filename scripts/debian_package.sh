#!/usr/bin/env bash
# Makes the Debian package, has lintian look at it, and tries it: unpacked in an empty folder, the program must find its
# module and load a cloud, and removing the package's files must leave nothing behind.
#
#   scripts/debian_package.sh [BUILD_FOLDER]     without a folder it builds the preset release
set -euo pipefail
cd "$(dirname "$0")/.."
fail() { echo "debian_package: $*" >&2; exit 1; }

scripts/install_dependencies.sh dpkg-dev lintian gzip
build=${1:-}
if [ -z "$build" ]; then
  build=build/release
  cmake --preset release
  cmake --build --preset release -j "$(nproc)" --target kelvra_cli kelvra_module
fi
cmake --build "$build" --target kelvra_reference
rm -f out/kelvra_*.deb
(cd "$build" && cpack -G DEB >/dev/null) || fail "cpack failed"
package=$(ls out/kelvra_*.deb)
said=$(lintian --no-tag-display-limit --fail-on error --allow-root "$package" 2>&1) || fail "lintian: $said"

root=$(mktemp -d)
trap 'rm -rf "$root"' EXIT
mkdir "$root/system" "$root/work"
dpkg-deb -x "$package" "$root/system"
printf '1 2 3\n4 5 6\n7 8 9\n' >"$root/work/three.xyz"
said=$(cd "$root/work" && XDG_CONFIG_HOME=$root/work "$root/system/usr/bin/kelvra" info three.xyz 2>&1) || fail "the installed program fails: $said"
case "$said" in *"3 points"*) ;; *) fail "the installed program did not load 3 points: $said" ;; esac
for file in usr/share/man/man1/kelvra.1.gz usr/share/bash-completion/completions/kelvra usr/share/applications/kelvra.desktop; do
  [ -s "$root/system/$file" ] || fail "$file is missing"
done
# In the order of a removal: files and links, then the folders that are empty.
dpkg-deb --fsys-tarfile "$package" | tar -t | sort -r | while read -r path; do
  if [ -d "$root/system/$path" ] && [ ! -L "$root/system/$path" ]; then
    rmdir --ignore-fail-on-non-empty "$root/system/$path"
  else
    rm "$root/system/$path"
  fi
done
left=$(find "$root" -path "$root/work" -prune -o -type f -print)
[ -z "$left" ] || fail "left behind: $left"
echo "$package ($(stat -c %s "$package") bytes) installs, loads a cloud and is removed"
