#!/usr/bin/env bash
# Writes the release archives dist/Quill-VERSION-win32.zip and -win64.zip and dist/SHA256SUMS.
# Each archive holds one folder Quill-VERSION-ARCH with Quill.exe and quill-tool.exe (stripped),
# LANGUAGE/ and TEMPLATE/ as the build left them beside Quill.exe, and the user README.
# Two runs over the same build give the same bytes: entries in a fixed order, time stamps taken
# from the last commit, fixed attributes.
#
#   scripts/package.sh              configures and builds the win32 and win64 presets first
#   scripts/package.sh --no-build   packages the build trees as they are (test.sh, after its builds)
#   scripts/package.sh --out DIR    writes into DIR instead of dist/
set -euo pipefail
cd "$(dirname "$0")/.."

build=1
out=dist
while [ $# -gt 0 ]; do
  case "$1" in
    --no-build) build=0 ;;
    --out) out=$2; shift ;;
    *) echo "usage: scripts/package.sh [--no-build] [--out DIR]" >&2; exit 2 ;;
  esac
  shift
done

version=$(sed -n 's/^#define QUILL_VERSION_TEXT "\(.*\)"$/\1/p' foundation/version.h)
[ -n "$version" ] || { echo "package: no version in foundation/version.h" >&2; exit 1; }
# The time stamp of every entry: the commit's, so that it says when these files were made.
stamp=$(git log -1 --format=%ct 2>/dev/null || echo 315532800)

[ "$build" = 1 ] && ./scripts/deps.sh
declare -A strip_tool=([win32]=i686-w64-mingw32-strip [win64]=x86_64-w64-mingw32-strip)
mkdir -p "$out"
stage=$(mktemp -d)
trap 'rm -rf "$stage"' EXIT

for arch in win32 win64; do
  if [ "$build" = 1 ]; then
    cmake --preset "$arch" >/dev/null
    cmake --build --preset "$arch" --target Quill quill-tool
  fi
  bin=build/$arch/bin
  for file in Quill.exe quill-tool.exe; do
    [ -f "$bin/$file" ] || { echo "package: $bin/$file is missing (build the $arch preset)" >&2; exit 1; }
  done
  name=Quill-$version-$arch
  folder=$stage/$name
  mkdir -p "$folder/LANGUAGE" "$folder/TEMPLATE"
  # strip writes the current time into the headers unless it is given one.
  for file in Quill.exe quill-tool.exe; do
    SOURCE_DATE_EPOCH=0 "${strip_tool[$arch]}" -o "$folder/$file" "$bin/$file"
  done
  # Whatever language files and help texts the build put beside the program.
  if [ -d "$bin/LANGUAGE" ]; then
    find "$bin/LANGUAGE" -maxdepth 1 -type f \( -iname '*.lng' -o -iname '*.rtf' -o -iname '*.txt' \) \
      -exec cp {} "$folder/LANGUAGE/" \;
  fi
  cp -R "$bin/TEMPLATE/." "$folder/TEMPLATE/"
  # Windows readers: CR LF, and a byte-order mark so that Notepad takes the text as UTF-8.
  {
    printf '\xEF\xBB\xBF'
    sed -e "s/@VERSION@/$version/" -e "s/@ARCH@/$arch/" -e 's/$/\r/' resources/package/README.txt
  } >"$folder/README.txt"
  [ -f LICENSE ] && sed 's/$/\r/' LICENSE >"$folder/LICENSE.txt"
  python3 scripts/reproducible-zip.py "$stage" "$name" "$stamp" "$out/$name.zip"
  echo "$out/$name.zip"
done
(cd "$out" && sha256sum "Quill-$version-win32.zip" "Quill-$version-win64.zip" >SHA256SUMS)
echo "$out/SHA256SUMS"
