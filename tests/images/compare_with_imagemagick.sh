#!/usr/bin/env bash
# Decodes PNG files with quill-tool png and with ImageMagick (convert FILE rgba:-) and counts the
# files on which the two agree. Not part of the test suite: it needs ImageMagick and takes a while.
#   tests/images/compare_with_imagemagick.sh [QUILL-TOOL] [FILE...]
# Without files it takes the first 300 PNG files under /usr/share.
set -uo pipefail
tool=${1:-build/native/bin/quill-tool}
shift || true
if [ $# -eq 0 ]; then
  mapfile -t files < <(find /usr/share -name '*.png' -type f 2>/dev/null | head -300)
else
  files=("$@")
fi
agree=0 differ=0 ours_only=0 theirs_only=0 both_fail=0
for f in "${files[@]}"; do
  ours=$("$tool" png "$f" 2>/dev/null | cut -d' ' -f3)
  size=$(identify -format '%w %h' "$f[0]" 2>/dev/null)
  theirs=$(convert "$f[0]" -depth 8 rgba:- 2>/dev/null | sha256sum | cut -d' ' -f1)
  [ -z "$size" ] && theirs=""
  if [ -n "$ours" ] && [ -n "$theirs" ]; then
    if [ "$ours" = "$theirs" ]; then agree=$((agree + 1)); else differ=$((differ + 1)); echo "differ: $f"; fi
  elif [ -n "$ours" ]; then ours_only=$((ours_only + 1)); echo "only quill-tool decodes: $f"
  elif [ -n "$theirs" ]; then theirs_only=$((theirs_only + 1)); echo "only ImageMagick decodes: $f"
  else both_fail=$((both_fail + 1)); fi
done
echo "files ${#files[@]}: agree $agree, differ $differ, only quill-tool $ours_only," \
     "only ImageMagick $theirs_only, neither $both_fail"
