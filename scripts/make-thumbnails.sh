#!/usr/bin/env bash
# Writes presets/thumbnails/: the sample coffee photo, its centre cropped to 400 x 400, rendered
# with each built-in preset and scaled to 200 x 200. The thumbnails are embedded at build time,
# so run this on purpose, after a change that alters how the presets look.
# Usage: scripts/make-thumbnails.sh [build folder]   (needs ImageMagick's convert)
set -euo pipefail
cd "$(dirname "$0")/.."
render=$(realpath "${1:-build}")/bin/tornvale-render
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
# A home of its own, so the presets listed are the built-ins and not a user's.
export HOME=$work/home
mkdir -p "$HOME"
convert samples/coffee.png -gravity center -crop 400x400+0+0 +repage "$work/crop.png"
"$render" --list-presets | while IFS= read -r name; do
  "$render" --preset "$name" --overwrite -o "$work/out.png" "$work/crop.png" 2>/dev/null
  convert "$work/out.png" -resize 200x200 -quality 85 "presets/thumbnails/$name.jpg"
  echo "$name"
done
