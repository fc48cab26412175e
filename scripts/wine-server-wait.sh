#!/usr/bin/env bash
# Waits until the prefix's wineserver has ended, so that the registry is written to disk.
wineserver=$(command -v wineserver || echo /usr/lib/wine/wineserver64)
[ -x "$wineserver" ] || wineserver=/usr/lib/wine/wineserver
"$wineserver" -w
