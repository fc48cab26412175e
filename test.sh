#!/usr/bin/env bash
# Builds every preset and runs every test: the native unit tests under the sanitizers, the unit and
# end-to-end tests under Wine, the 32-bit build, and a short run of every fuzz target. Ends with
# one line "N passed, N failed".
set -uo pipefail
cd "$(dirname "$0")"
./scripts/deps.sh || { echo "0 passed, 1 failed"; exit 1; }
source scripts/wine-env.sh

mkdir -p build
passed=0
failed=0

note() { printf '\n=== %s\n' "$*"; }

# build PRESET: configure and build; a failed build counts as one failed test.
build() {
  note "build $1"
  if cmake --preset "$1" >"build/configure-$1.log" 2>&1 && cmake --build --preset "$1"; then
    return 0
  fi
  cat "build/configure-$1.log" | tail -20
  echo "build of preset $1 failed"
  failed=$((failed + 1))
  return 1
}

# run PRESET: ctest with every line of output kept, then the count of what passed and failed.
run() {
  note "test $1"
  local log="build/ctest-$1.log"
  # The native tests' temporary files go to a folder of this run's own, so that runs of other
  # checkouts on the machine never meet them (Windows programs keep their own TEMP).
  if [ "$1" = native ]; then
    TEST_TMPDIR="$(mktemp -d)/" ctest --preset "$1" -V >"$log" 2>&1
  else
    ctest --preset "$1" -V >"$log" 2>&1
  fi
  grep -E '^[0-9]+: \[  FAILED  \]|Test +#[0-9]+: ' "$log"
  grep -qE 'Test +#' "$log" || { tail -30 "$log"; failed=$((failed + 1)); return; }
  read -r p f < <(awk -f scripts/count-results.awk "$log")
  passed=$((passed + p))
  failed=$((failed + f))
  [ "$f" -eq 0 ] || echo "failures are in $log"
}

if build native; then run native; fi

if build win64; then
  quill_wine_prefix
  quill_private_display && trap quill_stop_display EXIT
  run win64
  for shot in build/win64/e2e-shots/*.bmp; do
    [ -f "$shot" ] && bmptopnm "$shot" 2>/dev/null | pnmtopng >"${shot%.bmp}.png" 2>/dev/null
  done
fi

if build win32; then
  note "the 32-bit Quill.exe"
  if [ -f build/win32/bin/Quill.exe ]; then passed=$((passed + 1)); else failed=$((failed + 1)); fi
fi

# The release archives from the trees built above (no second build), and the unpacked 64-bit
# program run once under Wine.
if [ -f build/win64/bin/quill-smoke.exe ] && [ -f build/win32/bin/Quill.exe ] && [ -n "${DISPLAY:-}" ]; then
  note "package"
  if scripts/package-smoke.sh; then passed=$((passed + 1)); else failed=$((failed + 1)); fi
fi

if build fuzz; then run fuzz; fi

echo
echo "$passed passed, $failed failed"
[ "$failed" -eq 0 ]
