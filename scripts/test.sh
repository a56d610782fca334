#!/usr/bin/env bash
# Installs what is missing, builds, and runs every test through CTest.
# Tests that open a window run under Xvfb when no display is set.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/install-deps.sh
bash scripts/build.sh
cd "${BUILD_DIR:-build}"
if [ -z "${DISPLAY:-}" ]; then
  exec xvfb-run -a -s "-screen 0 1920x1080x24 -noreset" ctest --output-on-failure -j"$(nproc)"
else
  exec ctest --output-on-failure -j"$(nproc)"
fi
