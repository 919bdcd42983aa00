#!/usr/bin/env bash
# Runs a program for Windows in an emulator of its own, with all that it needs in Build/wine. CMake calls this for tests
# (CMake/MinGW.cmake).
#
#   Scripts/Wine.sh PROGRAM [ARGUMENT...]
set -euo pipefail
build=$(cd "$(dirname "$0")/.." && pwd)/Build

export WINEPREFIX=$build/wine WINEDEBUG=${WINEDEBUG:--all}
unset DISPLAY
export WINEDLLOVERRIDES=explorer.exe=d # no desktop: there is nothing to see, and it would keep a test's output open
export LC_ALL=${LC_ALL:-C.UTF-8} # in which file names are taken
# The libraries of the compiler, and this project's own.
libraries=$build/mingw-packages/bin
export WINEPATH="Z:${libraries//\//\\}"
exec wine "$@"
