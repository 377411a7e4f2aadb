#!/usr/bin/env bash
# Runs a Windows program under Wine, with a folder of its own for Wine's settings (KELVRA_WINE_PREFIX, else below build/).
# KELVRA_WINE_DATA names a folder that the program sees as its own settings folder.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
export WINEPREFIX=${KELVRA_WINE_PREFIX:-$root/build/wine}
export WINEDEBUG=${WINEDEBUG:--all} WINEARCH=win64 DISPLAY= WAYLAND_DISPLAY=
# No Mono, no Gecko, no menus.
export WINEDLLOVERRIDES="mscoree,mshtml,winemenubuilder.exe=d"
# Names with letters outside ASCII reach the program only in a locale that has them.
export LC_ALL=C.UTF-8
wine=/usr/lib/wine/wine64
[ -x "$wine" ] || wine=$(command -v wine64 || command -v wine) || { echo "wine.sh: no Wine is installed" >&2; exit 127; }
if [ ! -f "$WINEPREFIX/system.reg" ]; then
  mkdir -p "$WINEPREFIX"
  # Once, whoever comes first.
  exec 9>"$WINEPREFIX/../$(basename "$WINEPREFIX").lock"
  flock 9
  [ -f "$WINEPREFIX/system.reg" ] || "$wine" wineboot --init >/dev/null 2>&1 </dev/null || { echo "wine.sh: Wine could not be set up" >&2; exit 127; }
  exec 9>&-
fi
exec "$wine" "$@"
