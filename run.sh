#!/usr/bin/env bash
# ./run.sh [FILE]                       builds Quill.exe and starts it under Wine on this display
# ./run.sh --screenshot OUT.png [FILE]  runs it on a private virtual display instead, waits until
#                                       the frame has painted, saves a screenshot, closes Quill
set -euo pipefail
cd "$(dirname "$0")"
root=$(pwd)

screenshot=
if [ "${1:-}" = "--screenshot" ]; then
  [ $# -ge 2 ] || { echo "usage: ./run.sh --screenshot OUT.png [FILE]" >&2; exit 2; }
  screenshot=$(realpath -m "$2")
  shift 2
fi
file=${1:-}
[ -z "$file" ] || file=$(realpath -m "$file")

./scripts/deps.sh
mkdir -p build
cmake --preset win64 >build/configure-run.log 2>&1 || { cat build/configure-run.log >&2; exit 1; }
cmake --build --preset win64 --target Quill quill-shot

source scripts/wine-env.sh
quill_wine_prefix
bin="$root/build/win64/bin"
# The display comes first: a Wine program started without one (even winepath) leaves the
# prefix's desktop without a screen for the programs after it.
if [ -n "$screenshot" ]; then
  quill_private_display
  trap quill_stop_display EXIT
fi
args=()
[ -z "$file" ] || args+=("$("$QUILL_WINE" winepath -w "$file" 2>/dev/null)")

if [ -z "$screenshot" ]; then
  if [ -z "${DISPLAY:-}" ]; then
    echo "There is no display (DISPLAY is not set); try ./run.sh --screenshot OUT.png" >&2
    exit 1
  fi
  exec "$QUILL_WINE" "$bin/Quill.exe" "${args[@]}"
fi

bmp=$(mktemp --suffix=.bmp)
status=0
"$QUILL_WINE" "$bin/quill-shot.exe" "$("$QUILL_WINE" winepath -w "$bmp" 2>/dev/null)" \
  "$("$QUILL_WINE" winepath -w "$bin/Quill.exe" 2>/dev/null)" "${args[@]}" || status=$?
mkdir -p "$(dirname "$screenshot")"
if [ -s "$bmp" ]; then
  bmptopnm "$bmp" 2>/dev/null | pnmtopng >"$screenshot"
  echo "screenshot: $screenshot"
fi
rm -f "$bmp"
exit $status
