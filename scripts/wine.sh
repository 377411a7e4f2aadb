#!/usr/bin/env bash
# Runs a Windows program under Wine, with a separate folder for Wine's settings (KELVRA_WINE_PREFIX, or one below build/).
# Keeps Wine's server alive for two minutes after the last program: starting it takes seconds, and it refuses a program
# that comes while it shuts down.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
export WINEPREFIX=${KELVRA_WINE_PREFIX:-$root/build/wine}
export WINEDEBUG=${WINEDEBUG:--all} WINEARCH=win64 DISPLAY= WAYLAND_DISPLAY=
# No Mono, no Gecko, no menus.
export WINEDLLOVERRIDES="mscoree,mshtml,winemenubuilder.exe=d"
# File names beyond ASCII reach the program only in a locale that has their letters.
export LC_ALL=C.UTF-8
wine=/usr/lib/wine/wine64
[ -x "$wine" ] || wine=$(command -v wine64 || command -v wine) || { echo "wine.sh: no Wine is installed" >&2; exit 127; }
# Drive Z: holds this machine's folders.
case "${XDG_CONFIG_HOME:-}" in /*) export XDG_CONFIG_HOME="Z:$XDG_CONFIG_HOME" ;; esac
mkdir -p "$WINEPREFIX"
server=/usr/lib/wine/wineserver
[ -x "$server" ] || server=/usr/lib/wine/wineserver64
alive="$WINEPREFIX/server.alive"
# At most once a minute, by whoever comes first.
if [ ! -f "$WINEPREFIX/system.reg" ] || [ -z "$(find "$alive" -newermt '-60 seconds' 2>/dev/null)" ]; then
  exec 9>"$WINEPREFIX/start.lock"
  flock 9
  if [ ! -f "$WINEPREFIX/system.reg" ]; then
    "$wine" wineboot --init >/dev/null 2>&1 </dev/null 9>&- || { echo "wine.sh: Wine could not be set up" >&2; exit 127; }
  fi
  "$server" -p120 >/dev/null 2>&1 </dev/null 9>&- || true # it complains when it is already running
  # Starts Wine's own services here: started by our program, they would keep its output open as long as they live.
  "$wine" cmd /c exit >/dev/null 2>&1 </dev/null 9>&- || { echo "wine.sh: Wine does not start" >&2; exit 127; }
  touch "$alive"
  exec 9>&-
fi
exec "$wine" "$@"
