#!/usr/bin/env bash
# GIMP as the host: the plug-in installed by its script into a GIMP folder of the test's own,
# `gimp -i -b` runs it non-interactively on an 8-bit RGB, a 16-bit RGB and an 8-bit grey photo
# with recorded settings, and each layer comes back as the line art that tornvale-render makes of
# the same photo with the same settings; a selection keeps the rest of a 16-bit layer exact. With
# a display, an interactive run opens the program's window, Ctrl+S (Apply to Photo) returns, and
# the layer has changed.
# Usage: gimp_test.sh <tornvale> <tornvale-render> <tornvale-plugin-gimp or "none"> <samples>
# Exits 77 (skipped) when GIMP or the plug-in is missing.
set -uo pipefail
. "$(dirname "$0")/../app/window_test_lib.sh"
root=$(realpath "$(dirname "$0")/../..")
app=$(realpath "$1")
render=$(realpath "$2")
plugin=$3
samples=$(realpath "$4")
command -v gimp >/dev/null || { echo "gimp_test: gimp is not installed, skipped"; exit 77; }
[ -x "$plugin" ] || { echo "gimp_test: the plug-in was not built (libgimp2.0-dev missing), skipped"; exit 77; }

work=$(mktemp -d)
export HOME=$work/home GIMP2_DIRECTORY=$work/gimp TORNVALE_PROGRAM=$app TORNVALE_COMPONENT_MAP=$work/map.txt
unset XDG_CONFIG_HOME
mkdir -p "$HOME"
gimppid=""
cleanup() {
  if [ -n "$gimppid" ] && kill -0 "$gimppid" 2>/dev/null; then kill "$gimppid"; fi
  release_input
  rm -rf "$work"
}
trap cleanup EXIT
fail() { echo "gimp_test: FAIL: $*"; tail -20 "$work/gimp.log" 2>/dev/null; exit 1; }

bash "$root/scripts/install-gimp-plugin.sh" "$plugin" >/dev/null || fail "the install script failed"

# Small photos without colour chunks, so that GIMP and the renderer read the same values.
plain=(-strip -define png:exclude-chunks=gAMA,cHRM,bKGD,date,time)
convert "$samples/coffee.png" -resize 240x "${plain[@]}" "PNG24:$work/rgb8.png"
convert "$samples/coffee.png" -resize 240x -depth 16 "${plain[@]}" "PNG48:$work/rgb16.png"
convert "$samples/coffee.png" -resize 240x -colorspace Gray -depth 8 "${plain[@]}" -define png:color-type=0 "$work/grey8.png"
settings="strokeLength=0.8 contrast=0.6"

batch="(define (tornvale in out mode settings)
  (let* ((image (car (gimp-file-load RUN-NONINTERACTIVE in in)))
         (drawable (car (gimp-image-get-active-drawable image))))
    (plug-in-tornvale-art mode image drawable settings)
    (gimp-file-save RUN-NONINTERACTIVE image drawable out out)
    (gimp-image-delete image)))
(define (tornvale-right-half in out)
  (let* ((image (car (gimp-file-load RUN-NONINTERACTIVE in in)))
         (drawable (car (gimp-image-get-active-drawable image))))
    (gimp-image-select-rectangle image CHANNEL-OP-REPLACE 120 0 120 160)
    (plug-in-tornvale-art RUN-NONINTERACTIVE image drawable \"\")
    (gimp-file-save RUN-NONINTERACTIVE image drawable out out)
    (gimp-image-delete image)))"
calls="(tornvale-right-half \"$work/rgb16.png\" \"$work/half-out.png\")"
for kind in rgb8 rgb16 grey8; do
  calls="$calls (tornvale \"$work/$kind.png\" \"$work/$kind-out.png\" RUN-NONINTERACTIVE \"$settings\")"
done
# Each -b is read on its own, so the helper and its calls go in one.
timeout 240 gimp -i -d -f -b "(begin $batch $calls)" -b "(gimp-quit 0)" >"$work/gimp.log" 2>&1 || fail "gimp ended with an error"

rmse() { compare -metric RMSE "$1" "$2" null: 2>&1 | sed -n 's/.*(\(.*\)).*/\1/p'; }
# The same photo and settings through the command-line renderer (8-bit; grey photos render in
# colour there and the host takes the luminance).
for kind in rgb8 rgb16 grey8; do
  [ -f "$work/$kind-out.png" ] || fail "no result for $kind"
  "$render" --set strokeLength=0.8 --set contrast=0.6 -o "$work/$kind-ref.png" "$work/$kind.png" >/dev/null 2>&1 \
    || fail "tornvale-render failed on $kind"
  [ "$kind" = grey8 ] && convert "$work/$kind-ref.png" -colorspace Gray "$work/$kind-ref.png"
  depth=$(identify -format '%z' "$work/$kind-out.png")
  toref=$(rmse "$work/$kind-out.png" "$work/$kind-ref.png")
  toin=$(rmse "$work/$kind-out.png" "$work/$kind.png")
  echo "gimp_test: $kind: $depth-bit result, RMSE to tornvale-render $toref, to the photo $toin"
  [ "$depth" = "${kind//[a-z]/}" ] || fail "$kind came back with $depth bits"
  # 8-bit RGB goes through unchanged, so it must match exactly; 16-bit samples are rounded to 8 bits
  # for the effect and grey takes another luminance formula than ImageMagick's: a few levels.
  limit=0.02; [ "$kind" = rgb8 ] && limit=0.0005
  below "$toref" "$limit" || fail "$kind differs from tornvale-render ($toref)"
  # A 240-pixel photo renders with the short lines of its small scale, and grey loses the colour
  # part of the change: 0.06 to 0.15 was measured; a photo handed back unchanged gives 0.
  below 0.03 "$toin" || fail "$kind did not become line art ($toin)"
done

# A selection of the right half: the left half comes back with every 16-bit sample as it was.
[ -f "$work/half-out.png" ] || fail "no result for the selection"
for side in 0 120; do
  convert "$work/half-out.png" -crop 120x160+$side+0 +repage "$work/out-$side.png"
  convert "$work/rgb16.png" -crop 120x160+$side+0 +repage "$work/in-$side.png"
done
left=$(compare -metric AE "$work/out-0.png" "$work/in-0.png" null: 2>&1)
right=$(rmse "$work/out-120.png" "$work/in-120.png")
echo "gimp_test: selection: $left pixels changed outside it, RMSE $right inside"
[ "$left" = 0 ] || fail "pixels outside the selection changed"
below 0.1 "$right" || fail "the selected half did not change"

# Interactive: the program's window opens on the layer, and Ctrl+S hands it back.
if [ -n "${DISPLAY:-}" ] && command -v xdotool >/dev/null; then
  release_input
  timeout 120 gimp -i -d -f -b "(begin $batch (tornvale \"$work/rgb8.png\" \"$work/window-out.png\" RUN-INTERACTIVE \"\"))" \
    -b "(gimp-quit 0)" >"$work/gimp.log" 2>&1 &
  gimppid=$!
  wait_for_picture 240x160 || fail "the window did not open on GIMP's layer"
  wid=$(xdotool search --onlyvisible --name "Tornvale Art" | head -1)
  [ -n "$wid" ] || fail "no window"
  press ctrl+s
  wait "$gimppid" || fail "gimp ended with an error after Apply to Photo"
  gimppid=""
  changed=$(rmse "$work/window-out.png" "$work/rgb8.png")
  echo "gimp_test: interactive: Apply to Photo changed the layer by RMSE $changed"
  below 0.1 "$changed" || fail "the layer did not change"
fi
echo "gimp_test: passed"
