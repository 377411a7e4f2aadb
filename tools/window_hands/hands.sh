# Hands for the window: a virtual display, and functions for what a user does in it. To be sourced by a bash script.

# open_window SIZE COMMAND...: starts a display of that size and the program; $w is the window. Where none
# opens, the script ends with the program's status.
# What the program prints is in the files "printed" and "errors".
open_window() {
  local size=$1
  shift
  rm -f display
  Xvfb -displayfd 7 -screen 0 "${size}x24" 7>display >/dev/null 2>&1 &
  server=$!
  trap 'kill "$server" $(jobs -p) 2>/dev/null' EXIT
  until [ -s display ]; do sleep 0.1; done
  export DISPLAY=:$(cat display)
  "$@" >printed 2>errors &
  program=$!
  w=
  while [ -z "$w" ] && kill -0 "$program" 2>/dev/null; do
    sleep 0.2
    w=$(xdotool search --onlyvisible --name 'Kelvra$' 2>/dev/null | tail -1) || true
  done
  if [ -z "$w" ]; then # it printed why
    wait "$program"
    exit
  fi
  xdotool windowfocus "$w"
}

# close_window: waits until the program ends, and returns its status.
close_window() {
  wait "$program"
}

key() { xdotool key --window "$w" "$@" && sleep 0.3; }
# point X Y [ACTION...]
point() { xdotool mousemove --window "$w" "$1" "$2" sleep 0.3 "${@:3}"; }
drop() { python3 "$(dirname "${BASH_SOURCE[0]}")/drop_files.py" "$w" "$@"; }
# shot NAME: what the window shows as NAME.png, once it is not busy any more: until then the key has no effect.
shot() {
  rm -f kelvra_*.png
  sleep 0.5
  local tries
  for ((tries = 0; tries < 150; ++tries)); do
    key F12 || return
    [ ! -s kelvra_0001.png ] || break
  done
  sleep 0.3 # written in whole
  mv kelvra_0001.png "$1.png"
  rm -f kelvra_*.png
}
