#!/usr/bin/env bash
# Runs a Windows program under Wine, with a folder of its own for Wine's settings (KELVRA_WINE_PREFIX, else below build/).
# Wine's server is told to stay for two minutes after the last program: starting it takes seconds, and a program that
# comes while it ends is refused.
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
# This machine's folders are below drive Z: there.
case "${XDG_CONFIG_HOME:-}" in /*) export XDG_CONFIG_HOME="Z:$XDG_CONFIG_HOME" ;; esac
mkdir -p "$WINEPREFIX"
server=/usr/lib/wine/wineserver
[ -x "$server" ] || server=/usr/lib/wine/wineserver64
alive="$WINEPREFIX/server.alive"
# Once every minute at most, whoever comes first.
if [ ! -f "$WINEPREFIX/system.reg" ] || [ -z "$(find "$alive" -newermt '-60 seconds' 2>/dev/null)" ]; then
  exec 9>"$WINEPREFIX/start.lock"
  flock 9
  if [ ! -f "$WINEPREFIX/system.reg" ]; then
    "$wine" wineboot --init >/dev/null 2>&1 </dev/null 9>&- || { echo "wine.sh: Wine could not be set up" >&2; exit 127; }
  fi
  "$server" -p120 >/dev/null 2>&1 </dev/null 9>&- || true # it says so when it runs already
  # Brings up Wine's own services, which would keep the output of our program open for as long as they live.
  "$wine" cmd /c exit >/dev/null 2>&1 </dev/null 9>&- || { echo "wine.sh: Wine does not start" >&2; exit 127; }
  touch "$alive"
  exec 9>&-
fi
exec "$wine" "$@"
