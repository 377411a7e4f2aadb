#!/usr/bin/env bash
# Makes the Debian package, has lintian look at it, and tries it as users get it: `cmake --install` into an empty folder,
# and the package installed into an empty system, from which its removal must leave nothing behind.
#
#   scripts/debian_package.sh [BUILD_FOLDER]     without a folder it builds the preset release
set -euo pipefail
cd "$(dirname "$0")/.."
fail() { echo "debian_package: $*" >&2; exit 1; }

scripts/install_dependencies.sh dpkg-dev lintian gzip man-db desktop-file-utils shared-mime-info zsh
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
said=$(lintian --tag-display-limit 0 --fail-on error --allow-root "$package" 2>&1) || fail "lintian: $said"

root=$(mktemp -d)
trap 'rm -rf "$root"' EXIT
mkdir "$root/work"
printf '1 2 3\n4 5 6\n7 8 9\n' >"$root/work/three.xyz"
loads_a_cloud() { # the program, from a folder without anything of the build
  local said
  said=$(cd "$root/work" && XDG_CONFIG_HOME=$root/work "$1" info three.xyz 2>&1) || fail "$1 fails: $said"
  case "$said" in *"3 points"*) ;; *) fail "$1 did not load 3 points: $said" ;; esac
}

cmake --install "$build" --prefix "$root/prefix" >/dev/null
loads_a_cloud "$root/prefix/bin/kelvra"

system=$root/system
as_root=()
[ "$(id -u)" -eq 0 ] || as_root=(sudo)
debian() { "${as_root[@]}" dpkg --root="$system" --force-depends --log="$root/log" "$@" >"$root/dpkg" 2>&1 || fail "dpkg $*: $(cat "$root/dpkg")"; }
mkdir -p "$system"/var/lib/dpkg/{info,updates,triggers}
touch "$system/var/lib/dpkg/status"
debian --install "$package"
loads_a_cloud "$system/usr/bin/kelvra"

share=$system/usr/share
said=$(MANROFFSEQ='' man --warnings -l -Tutf8 -Z "$share/man/man1/kelvra.1.gz" 2>&1 >/dev/null) || fail "man fails: $said"
[ -z "$said" ] || fail "the manual page: $said"
desktop-file-validate "$share/applications/kelvra.desktop"
update-mime-database "$share/mime" 2>"$root/mime" || fail "MIME types: $(cat "$root/mime")"
for pattern in '*.las' '*.laz' '*.xyz' '*.pts'; do
  grep -qF ":$pattern" "$share/mime/globs2" || fail "no MIME type for $pattern"
done
for type in $(sed -n 's/^MimeType=//p' "$share/applications/kelvra.desktop" | tr ';' ' '); do
  grep -qxF "$type" "$share/mime/types" || fail "kelvra.desktop opens the unknown type $type"
done
rm -r "$share/mime"/{aliases,generic-icons,globs,globs2,icons,magic,mime.cache,subclasses,treemagic,types,version,XMLnamespaces,application}

offered=$(bash -c 'source "$1"; COMP_WORDS=(kelvra view --scr); COMP_CWORD=2; _kelvra; echo "${COMPREPLY[*]}"' - \
  "$share/bash-completion/completions/kelvra")
[ "$offered" = --screenshot ] || fail "bash completes --scr to: $offered"
offered=$(zsh -f scripts/zsh_completion.zsh "$share/zsh/vendor-completions" 'kelvra view --scr')
case "$offered" in *"view --screenshot"*) ;; *) fail "zsh completes --scr to: $offered" ;; esac

debian --purge kelvra
left=$(find "$system" -path "$system/var/lib/dpkg" -prune -o -type f -print)
[ -z "$left" ] || fail "left behind: $left"
echo "$package ($(stat -c %s "$package") bytes) installs, loads a cloud and is removed"
