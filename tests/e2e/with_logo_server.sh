#!/usr/bin/env bash
# Runs the logo scenarios with a local HTTP server: Python's http.server on 127.0.0.1 serving a
# fresh folder of the build tree, its address and folder handed over in the environment.
set -u
runner=$1
shift
root=$(cd "$(dirname "$1")/.." && pwd)/logo-server
rm -rf "$root"
mkdir -p "$root/files"
# Two pictures to serve as Logo.png: red 200x80 and green 220x90.
python3 - "$root" <<'PY'
import struct, sys, zlib
def png(path, width, height, rgb):
    def chunk(kind, data):
        return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))
    raw = (b"\0" + bytes(rgb) * width) * height
    with open(path, "wb") as f:
        f.write(b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", struct.pack(">IIBBBBB", width, height, 8, 2, 0, 0, 0))
                + chunk(b"IDAT", zlib.compress(raw)) + chunk(b"IEND", b""))
png(sys.argv[1] + "/red.png", 200, 80, (255, 0, 0))
png(sys.argv[1] + "/green.png", 220, 90, (0, 160, 0))
PY
port=$(python3 -c 'import socket; s=socket.socket(); s.bind(("127.0.0.1", 0)); print(s.getsockname()[1])')
(cd "$root/files" && exec python3 -m http.server --bind 127.0.0.1 "$port" 2>"$root/requests.log") &
server=$!
# A server that takes connections and never answers.
python3 -c 'import socket, time
s = socket.socket(); s.bind(("127.0.0.1", 0)); s.listen(16)
print(s.getsockname()[1], flush=True); time.sleep(86400)' >"$root/silent.port" &
silent=$!
trap 'kill $server $silent 2>/dev/null' EXIT
for _ in $(seq 1 50); do
  python3 -c "import socket; socket.create_connection(('127.0.0.1', $port), 1)" 2>/dev/null && break
  sleep 0.1
done
for _ in $(seq 1 50); do
  [ -s "$root/silent.port" ] && break
  sleep 0.1
done
export QUILL_LOGO_PORT=$port
export QUILL_SILENT_PORT=$(cat "$root/silent.port")
export QUILL_LOGO_ROOT="$root"
# The crash program's faults would start Wine's debugger, which keeps the test's output open
# after the test has ended: the report is all the test needs.
export WINEDLLOVERRIDES="${WINEDLLOVERRIDES:+$WINEDLLOVERRIDES;}winedbg.exe=d"
"$runner" "$@"
