#!/usr/bin/env bash
# Installs what building and running Quill needs on a Debian machine, only when something is missing.
set -euo pipefail

packages=(
  cmake ninja-build g++ clang libclang-rt-14-dev googletest ccache
  g++-mingw-w64-x86-64-posix g++-mingw-w64-i686-posix
  wine wine64 fonts-wine fonts-dejavu-core xvfb x11-apps netpbm xdotool fonts-nanum locales
  libpng-dev zlib1g-dev socat zip unzip
)

missing=()
for p in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed' || missing+=("$p")
done

sudo_cmd=()
[ "$(id -u)" -eq 0 ] || sudo_cmd=(sudo)

if [ ${#missing[@]} -gt 0 ]; then
  echo "Installing: ${missing[*]}"
  "${sudo_cmd[@]}" apt-get update -q
  DEBIAN_FRONTEND=noninteractive "${sudo_cmd[@]}" apt-get install -y -q --no-install-recommends "${missing[@]}"
fi

# Wine runs with a Korean locale so that the ANSI code page is 949.
if ! locale -a 2>/dev/null | grep -qi '^ko_KR\.utf-\?8$'; then
  echo "Generating the ko_KR.UTF-8 locale"
  "${sudo_cmd[@]}" localedef -i ko_KR -f UTF-8 ko_KR.UTF-8
fi
