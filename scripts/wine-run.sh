#!/usr/bin/env bash
# Runs a Windows program of the build under Wine, in Quill's environment (CTest's emulator).
set -u
source "$(dirname "${BASH_SOURCE[0]}")/wine-env.sh"
quill_wine_prefix
if [ -z "${DISPLAY:-}" ]; then
  quill_private_display || exit 1
  trap quill_stop_display EXIT
  "$QUILL_WINE" "$@"
  exit $?
fi
exec "$QUILL_WINE" "$@"
