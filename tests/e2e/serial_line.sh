#!/usr/bin/env bash
# Runs a test program with a real serial line: socat links a pair of pseudo-terminals as COM1 and
# COM2 of the test prefix. The program steers the line through files in the folder named by
# QUILL_SERIAL_CONTROL (in Wine's Z: form): "replug" swaps in a new pair (the device goes and a new
# one comes under the same names; "replugged" answers). "held" or "free" tells whether a program
# other than socat has COM1 open.
#   serial_line.sh <program> [arguments...]
set -u
source "$(dirname "${BASH_SOURCE[0]}")/../../scripts/wine-env.sh"
quill_wine_prefix
devices="$WINEPREFIX/dosdevices"
control=$(mktemp -d "${TMPDIR:-/tmp}/quill-serial.XXXXXX")
export QUILL_SERIAL_CONTROL="Z:${control//\//\\}"

# A pair under temporary names, then renamed into place, so COM1 and COM2 never name nothing.
start_pair() {
  rm -f "$devices/com1.new" "$devices/com2.new"
  socat "pty,link=$devices/com1.new,raw,echo=0,unlink-close=0" \
        "pty,link=$devices/com2.new,raw,echo=0,unlink-close=0" &
  pair=$!
  for _ in $(seq 1 100); do
    [ -L "$devices/com1.new" ] && [ -L "$devices/com2.new" ] && break
    sleep 0.05
  done
  pty1=$(readlink "$devices/com1.new")
  pty2=$(readlink "$devices/com2.new")
  mv -f "$devices/com1.new" "$devices/com1"
  mv -f "$devices/com2.new" "$devices/com2"
}

# Wine's mount manager makes the prefix's COM links anew when it starts: ours are put back.
keep_links() {
  [ "$(readlink "$devices/com1")" = "$pty1" ] || ln -sfn "$pty1" "$devices/com1"
  [ "$(readlink "$devices/com2")" = "$pty2" ] || ln -sfn "$pty2" "$devices/com2"
}

(
  pair=
  trap 'kill $pair 2>/dev/null; exit 0' TERM
  start_pair
  touch "$control/ready"
  while sleep 0.1; do
    if [ -f "$control/replug" ]; then
      old=$pair
      start_pair
      kill "$old" 2>/dev/null
      wait "$old" 2>/dev/null
      rm -f "$control/replug"
      touch "$control/replugged"
    else
      keep_links
      # Whether a program other than socat has COM1's pseudo-terminal open.
      if find /proc/[0-9]*/fd -lname "$pty1" 2>/dev/null | cut -d/ -f3 | grep -qvx "$pair"; then
        touch "$control/held"
        rm -f "$control/free"
      else
        touch "$control/free"
        rm -f "$control/held"
      fi
    fi
  done
) &
watcher=$!
for _ in $(seq 1 100); do
  [ -f "$control/ready" ] && break
  sleep 0.05
done

"$(dirname "${BASH_SOURCE[0]}")/../../scripts/wine-run.sh" "$@"
status=$?
kill "$watcher" 2>/dev/null
wait "$watcher" 2>/dev/null
rm -f "$devices/com1" "$devices/com2"
rm -rf "$control"
exit $status
