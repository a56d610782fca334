#!/usr/bin/env bash
# Installs the GIMP 2.10 plug-in (Filters > Artistic > Tornvale Art...) into the user's GIMP
# plug-in folder, building it first when needed. It needs libgimp2.0-dev at build time.
#   bash scripts/install-gimp-plugin.sh [PLUGIN]   (default: build/bin/tornvale-plugin-gimp)
# The plug-in starts the program it was built beside; TORNVALE_PROGRAM in GIMP's environment
# names another one. GIMP2_DIRECTORY, as GIMP itself honours it, moves the GIMP folder.
set -euo pipefail
cd "$(dirname "$0")/.."
plugin=${1:-${BUILD_DIR:-build}/bin/tornvale-plugin-gimp}
if [ ! -x "$plugin" ] && [ $# -eq 0 ]; then bash scripts/build.sh; fi
if [ ! -x "$plugin" ]; then
  echo "install-gimp-plugin: $plugin was not built (is libgimp2.0-dev installed?)" >&2
  exit 1
fi
# GIMP 2.10 runs a plug-in from a folder of its own name inside plug-ins.
folder="${GIMP2_DIRECTORY:-${XDG_CONFIG_HOME:-$HOME/.config}/GIMP/2.10}/plug-ins/tornvale-plugin-gimp"
mkdir -p "$folder"
cp "$plugin" "$folder/tornvale-plugin-gimp.part"
mv -f "$folder/tornvale-plugin-gimp.part" "$folder/tornvale-plugin-gimp"
echo "$folder/tornvale-plugin-gimp"
