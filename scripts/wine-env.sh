# Sourced: the Wine environment Quill runs in here. A private prefix in the build tree, a Korean
# locale (ANSI code page 949), and Wine's virtual desktop so windows get Windows-style frames.
QUILL_ROOT=${QUILL_ROOT:-$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)}
export WINEPREFIX=${QUILL_WINEPREFIX:-$QUILL_ROOT/build/wineprefix}
export WINEARCH=win64
export WINEDEBUG=${WINEDEBUG:--all}
# No Mono or Gecko download prompts: the prefix needs neither.
export WINEDLLOVERRIDES=${WINEDLLOVERRIDES:-mscoree,mshtml=}
export LC_ALL=ko_KR.UTF-8
QUILL_WINE=$(command -v wine64 || echo /usr/lib/wine/wine64)
QUILL_DESKTOP_SIZE=${QUILL_DESKTOP_SIZE:-1280x900}

# Creates the prefix on first use and turns on the virtual desktop for every program.
quill_wine_prefix() {
  quill_wine_prefix_create
  quill_wine_fonts
}

# A Korean Windows has Courier New, the editor's default Latin font; without it Wine falls back
# to a proportional face whose letters overlap on the editor's fixed cells. DejaVu Sans Mono
# stands in for it. Wine's own Marlett, which draws the caption buttons, is found only in the
# prefix's font folder (otherwise the buttons show the letters "0 1 r").
quill_wine_fonts() {
  local fonts="$WINEPREFIX/drive_c/windows/Fonts"
  if [ -d "$fonts" ] && [ ! -f "$fonts/marlett.ttf" ] && [ -f /usr/share/wine/fonts/marlett.ttf ]; then
    cp /usr/share/wine/fonts/marlett.ttf "$fonts/"
  fi
  [ -f "$WINEPREFIX/.quill-fonts" ] && return 0
  (
    flock 9
    [ -f "$WINEPREFIX/.quill-fonts" ] && exit 0
    "$QUILL_WINE" reg add 'HKCU\Software\Wine\Fonts\Replacements' /v 'Courier New' \
      /d 'DejaVu Sans Mono' /f >/dev/null 2>&1
    "$QUILL_ROOT/scripts/wine-server-wait.sh"
    touch "$WINEPREFIX/.quill-fonts"
  ) 9>"$WINEPREFIX.lock"
}

quill_wine_prefix_create() {
  [ -f "$WINEPREFIX/.quill-ready" ] && return 0
  mkdir -p "$(dirname "$WINEPREFIX")"
  (
    flock 9
    [ -f "$WINEPREFIX/.quill-ready" ] && exit 0
    "$QUILL_WINE" wineboot -i >/dev/null 2>&1
    "$QUILL_WINE" reg add 'HKCU\Software\Wine\Explorer' /v Desktop /d Default /f >/dev/null 2>&1
    "$QUILL_WINE" reg add 'HKCU\Software\Wine\Explorer\Desktops' /v Default /d "$QUILL_DESKTOP_SIZE" /f >/dev/null 2>&1
    "$QUILL_ROOT/scripts/wine-server-wait.sh"
    touch "$WINEPREFIX/.quill-ready"
  ) 9>"$WINEPREFIX.lock"
}

# Starts a private X display when there is none; sets DISPLAY and QUILL_XVFB_PID.
quill_private_display() {
  local n
  for n in $(seq 90 140); do
    [ -e "/tmp/.X$n-lock" ] || [ -e "/tmp/.X11-unix/X$n" ] && continue
    Xvfb ":$n" -screen 0 "${QUILL_DESKTOP_SIZE}x24" -nolisten tcp >/dev/null 2>&1 &
    QUILL_XVFB_PID=$!
    export DISPLAY=":$n"
    for _ in $(seq 1 50); do
      [ -e "/tmp/.X11-unix/X$n" ] && return 0
      sleep 0.1
    done
    kill "$QUILL_XVFB_PID" 2>/dev/null
  done
  echo "could not start Xvfb" >&2
  return 1
}

# Ends the prefix's Wine processes before their display: a desktop process left on a display
# that is gone would take the next program of the prefix down with it.
quill_stop_display() {
  local wineserver
  wineserver=$(command -v wineserver || echo /usr/lib/wine/wineserver64)
  "$wineserver" -k 2>/dev/null
  "$wineserver" -w 2>/dev/null
  [ -n "${QUILL_XVFB_PID:-}" ] && kill "$QUILL_XVFB_PID" 2>/dev/null
  QUILL_XVFB_PID=
}
