#!/bin/sh
# Runs a Windows program that the cross-build has made and needs itself, in a wine prefix beside the build.
export WINEPREFIX="$(cd "$(dirname "$0")/.." && pwd)/build-windows/wine" WINEDEBUG=-all WINEDLLOVERRIDES="mscoree,mshtml="
exec /usr/lib/wine/wine64 "$@"
