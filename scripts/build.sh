#!/usr/bin/env bash
# Configures (once) and builds the project into build/, executables in build/bin/.
set -euo pipefail
cd "$(dirname "$0")/.."
BUILD_DIR=${BUILD_DIR:-build}
# ccache lets several build trees (and repeated clean clones) share compiled JUCE modules.
export CCACHE_BASEDIR="$PWD" CCACHE_NOHASHDIR=1
launcher=()
command -v ccache >/dev/null && launcher=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache -DCMAKE_C_COMPILER_LAUNCHER=ccache)
if [ ! -f "$BUILD_DIR/CMakeCache.txt" ]; then
  cmake -S . -B "$BUILD_DIR" -DCMAKE_BUILD_TYPE=${BUILD_TYPE:-RelWithDebInfo} "${launcher[@]}" ${CMAKE_ARGS:-} >/dev/null
fi
cmake --build "$BUILD_DIR" -j"$(nproc)"
