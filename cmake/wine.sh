#!/bin/sh
# Runs a Windows program that the cross-build itself needs, in a wine prefix next to the build.
export WINEPREFIX="$(cd "$(dirname "$0")/.." && pwd)/build-windows/wine" WINEDEBUG=-all WINEDLLOVERRIDES="mscoree,mshtml="
exec /usr/lib/wine/wine64 "$@"
