#!/usr/bin/env bash
# The release package as a user gets it: packages the build trees as they are (no build), checks
# that a second packaging gives the same bytes, then unpacks the win64 archive into a fresh
# folder and runs its Quill.exe under Wine with a document (type, save, close), and reads the
# 32-bit executables' headers. Needs the win32 and win64 presets built and, for the Wine run, the
# environment of scripts/wine-env.sh with a display. Prints what failed; exit 1 when anything did.
set -uo pipefail
cd "$(dirname "$0")/.."
source scripts/wine-env.sh

work=$(mktemp -d "$PWD/build/package-smoke.XXXXXX")
trap 'rm -rf "$work"' EXIT
problems=0
# A Linux path as the Windows programs see it (drive Z: is the root).
winepath_of() { printf 'Z:%s' "${1//\//\\}"; }
problem() {
  echo "package: $*"
  problems=$((problems + 1))
}

version=$(sed -n 's/^#define QUILL_VERSION_TEXT "\(.*\)"$/\1/p' foundation/version.h)
scripts/package.sh --no-build --out "$work/first" >/dev/null || { echo "package: packaging failed"; exit 1; }
sleep 1  # a time stamp taken from the clock would now differ
scripts/package.sh --no-build --out "$work/second" >/dev/null || { echo "package: packaging failed"; exit 1; }
for file in "Quill-$version-win32.zip" "Quill-$version-win64.zip" SHA256SUMS; do
  cmp -s "$work/first/$file" "$work/second/$file" || problem "$file differs between two runs"
done
(cd "$work/first" && sha256sum --quiet -c SHA256SUMS) || problem "SHA256SUMS does not match"
# Keep the archives for a person to look at.
mkdir -p build/package && cp "$work/first/"* build/package/

for arch in win32 win64; do
  mkdir -p "$work/$arch"
  python3 -c 'import sys, zipfile; zipfile.ZipFile(sys.argv[1]).extractall(sys.argv[2])' \
    "$work/first/Quill-$version-$arch.zip" "$work/$arch" || problem "cannot unpack the $arch archive"
  root=$work/$arch/Quill-$version-$arch
  for entry in Quill.exe quill-tool.exe README.txt LANGUAGE TEMPLATE TEMPLATE/WINDOW.CPP; do
    [ -e "$root/$entry" ] || problem "$arch archive has no $entry"
  done
done

# Headers: the architecture, a GUI program for Quill.exe, a console one for quill-tool.exe, imports
# of Windows' own libraries only, and the version resource in Korean and English.
system_dlls='^(kernel32|user32|gdi32|comctl32|comdlg32|shell32|advapi32|ws2_32|ole32|oleaut32|shlwapi|winmm|imm32|version|msvcrt|riched20)\.dll$'
for arch in win32 win64; do
  machine=$([ "$arch" = win32 ] && echo i386 || echo amd64)
  for exe in Quill.exe quill-tool.exe; do
    subsystem=$([ "$exe" = Quill.exe ] && echo gui || echo console)
    info=$(python3 scripts/pe-info.py "$work/$arch/Quill-$version-$arch/$exe") || {
      problem "$arch $exe: unreadable headers"
      continue
    }
    grep -qx "machine=$machine" <<<"$info" || problem "$arch $exe is not $machine"
    grep -qx "subsystem=$subsystem" <<<"$info" || problem "$arch $exe is not a $subsystem program"
    grep -qx "timestamp=0" <<<"$info" || problem "$arch $exe carries its link time"
    while read -r dll; do
      grep -qiE "$system_dlls" <<<"$dll" || problem "$arch $exe imports $dll, not a Windows library"
    done < <(sed -n 's/^import=//p' <<<"$info")
    for line in "fileversion=${version/./.}.0.0" "productversion=${version/./.}.0.0" \
                "string 041204B0 FileVersion=$version" "string 040904B0 ProductVersion=$version" \
                "string 041204B0 OriginalFilename=$exe"; do
      grep -qxF "$line" <<<"$info" || problem "$arch $exe: no \"$line\" in its version resource"
    done
  done
done

# The win64 program run from the unpacked folder: a document typed into and saved, Quill.ini
# created beside the program, no leak, and nothing written outside that folder and the
# temporary folder.
root=$work/win64/Quill-$version-win64
printf 'int x;\r\n' >"$root/hello.c"
printf 'q1 int x;\r\n' >"$work/expected.c"
before=$(find "$root" | sort)
touch "$work/start"
sleep 1
"$QUILL_WINE" build/win64/bin/quill-smoke.exe "$(winepath_of "$root/Quill.exe")" \
  "$(winepath_of "$root/hello.c")" "q1 " "$(winepath_of "$PWD/build/package/smoke.bmp")" \
  || problem "the unpacked Quill.exe did not open, save and close cleanly"
cmp -s "$work/expected.c" "$root/hello.c" || problem "hello.c holds $(od -c "$root/hello.c" | head -3)"
ini=$(find "$root" -maxdepth 1 -iname quill.ini)
[ -n "$ini" ] || problem "no Quill.ini beside the unpacked Quill.exe"
added=$(comm -13 <(echo "$before") <(find "$root" | sort) | grep -viE '/quill\.ini$|/hello\.c$')
[ -z "$added" ] || problem "the run added files to its folder: $added"
outside=$(find "$WINEPREFIX/drive_c" "$work" -newer "$work/start" -type f 2>/dev/null |
  grep -v "^$root/" | grep -viE '/(temp|tmp)/' | grep -v "^$work/start$")
[ -z "$outside" ] || problem "the run wrote outside its folder: $outside"

[ "$problems" -eq 0 ]
