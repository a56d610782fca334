#!/usr/bin/env bash
# The live preview as a user meets it, on the X display in DISPLAY, with real mouse and key
# events: a photo named on the command line ends as line art; the original button shows the
# photo while held; a slider dragged while renders run ends with the picture of its last value;
# with manual rendering nothing changes until Render; zoom in, out and back to fit; randomize
# moves the sliders and changes the picture.
#
# The program writes where its controls are and what it is doing to the file named by
# TORNVALE_COMPONENT_MAP ("name x y w h" lines, "param key=value" lines and one "state" line), so
# the script can point at controls and wait for renders instead of guessing.
# Usage: ui_render_test.sh <tornvale executable> <samples folder> [screenshot to keep]
# UI_RENDER_PHOTO names another photo, for the figures of a larger preview (a 1500 x 1000 one).
# Exits 77 (skipped) without a display.
set -uo pipefail
. "$(dirname "$0")/window_test_lib.sh"

app=$(realpath "$1")
samples=$(realpath "$2")
keep_shot=${3:-}

if [ -z "${DISPLAY:-}" ]; then
  echo "ui_render_test: no DISPLAY, skipped"
  exit 77
fi
for tool in xdotool import convert compare; do
  command -v "$tool" >/dev/null || { echo "ui_render_test: $tool missing"; exit 1; }
done

work=$(mktemp -d)
export HOME=$work/home
unset XDG_CONFIG_HOME
mkdir -p "$HOME"
export TORNVALE_COMPONENT_MAP=$work/map.txt
pid=""

cleanup() {
  if [ -n "$pid" ] && kill -0 "$pid" 2>/dev/null; then kill "$pid"; fi
  release_input
  if [ -n "${KEEP_WINDOW_TEST:-}" ]; then echo "ui_render_test: files kept in $work"; else rm -rf "$work"; fi
}
trap cleanup EXIT
release_input

fail() {
  echo "ui_render_test: FAIL: $*"
  echo "--- component map"; cat "$work/map.txt" 2>/dev/null
  echo "--- program log"; tail -30 "$work/app.log" 2>/dev/null
  exit 1
}
say() { echo "ui_render_test: $*"; }

# Waits until no render runs and at least `min` renders have finished, and the count has stood
# still for a second (the completion of a render may start the next one).
wait_idle() { # min_renders label
  local tries=0 last=-1 stable=0
  while :; do
    if [ -f "$work/map.txt" ] && [ "$(state rendering)" = 0 ] && [ "$(state renders)" -ge "$1" ] 2>/dev/null; then
      if [ "$(state renders)" = "$last" ]; then stable=$((stable + 1)); else stable=0; fi
      last=$(state renders)
      [ $stable -ge 2 ] && return 0
    fi
    tries=$((tries + 1))
    [ $tries -ge 600 ] && fail "$2: renders did not settle (state: $(grep '^state' "$work/map.txt"))"
    sleep 0.5
  done
}

# A 32 x 32 thumbnail of the picture as shown in the view. The pointer leaves the window first,
# so no tooltip lies over the picture.
shot() { # out [keep pointer]
  local line; line=$(where shownImage); [ -n "$line" ] || fail "no picture shown"
  if [ -z "${2:-}" ]; then xdotool mousemove --sync 1 1; sleep 0.4; fi
  import -window root "$work/screen.png"
  convert "$work/screen.png" -crop "$(echo "$line" | awk '{ printf "%dx%d+%d+%d", $4, $5, $2, $3 }')" +repage "$work/full-$(basename "$1")"
  convert "$work/full-$(basename "$1")" -resize '32x32!' "$1"
}


photo=${UI_RENDER_PHOTO:-$samples/coffee.png}
convert "$photo" -resize '32x32!' "$work/photo.png"

# 1. A photo on the command line becomes line art in the view.
"$app" "$photo" >"$work/app.log" 2>&1 &
pid=$!
wid=$(timeout 60 xdotool search --sync --onlyvisible --name "Tornvale Art - $(basename "$photo")" | head -1)
[ -n "$wid" ] || fail "no window within 60 s"
wait_idle 1 start
shot "$work/art1.png"
value=$(rmse "$work/art1.png" "$work/photo.png")
say "rendered view against the photo: RMSE $value"
below "$value" 0.06 && fail "the view still shows the photo (RMSE $value)"
# Line art of this photo keeps its layout: the render's light and dark parts lie where the
# photo's edges and flat areas are, so it is far from a flat or unrelated picture.
mean_dev=$(convert "$work/full-art1.png" -colorspace Gray -format '%[fx:standard_deviation]' info:)
say "rendered view grey standard deviation $mean_dev"
below "$mean_dev" 0.04 && fail "the rendered view is nearly flat"

# 2. The original button shows the photo while held, and the render again on release.
point_at originalButton
xdotool mousedown 1
wait_state original 1 || fail "holding the original button did not switch to the photo"
sleep 0.3
shot "$work/held.png" keep
xdotool mouseup 1
value=$(rmse "$work/held.png" "$work/photo.png")
say "held original against the photo: RMSE $value"
below "$value" 0.03 || fail "holding the original button does not show the photo (RMSE $value)"
wait_state original 0 || fail "releasing the original button did not switch back"
sleep 0.3
shot "$work/released.png"
value=$(rmse "$work/released.png" "$work/art1.png")
below "$value" 0.005 || fail "releasing the original button does not bring the render back (RMSE $value)"

# 3. A slider dragged across while renders run: the last value ends on the screen.
before=$(param strokeLength)
renders=$(state renders)
line=$(where strokeLengthSlider); [ -n "$line" ] || fail "no Taper Length slider"
read -r _ sx sy sw sh <<<"$line"
# The track lies in the lower part of the control, with the label above it.
ty=$(( sy + sh - 12 )); x0=$(( sx + 12 )); x1=$(( sx + sw - 14 ))
xdotool mousemove --sync $(( x0 - 5 )) "$ty"
xdotool mousemove --sync "$x0" "$ty" mousedown 1
# Ten seconds of dragging: across, back and across again, four steps a second, while renders
# run; the program's heartbeat says how long its window went without answering meanwhile.
for step in $(seq 1 39); do
  phase=$(( step % 26 )); [ $phase -gt 13 ] && phase=$(( 26 - phase ))
  [ "$step" -ge 27 ] && phase=$(( step - 26 ))
  xdotool mousemove --sync $(( x0 + (x1 - x0) * phase / 13 )) "$ty"
  sleep 0.25
done
# Rest at the end before letting go, so the last position is a drag step of its own even while
# the window is busy with a render.
sleep 0.5
xdotool mousemove --sync $(( x1 + 1 )) "$ty"
sleep 0.3
xdotool mouseup 1
wait_idle $((renders + 1)) drag
# The program times its own pictures: from the newest change to the first picture that shows it
# (a draft, while the hand moves) and to its full preview.
stall=$(state stall); lag=$(state lag)
say "drag of 10 s: longest stall of the window $stall ms; the last change waited ${lag%/*} ms for its first picture and ${lag#*/} ms for the full preview"
after=$(param strokeLength)
say "Taper Length $before -> $after; renders $renders -> $(state renders), drafts $(state drafts)"
awk -v a="$after" 'BEGIN { exit !(a > 0.8) }' || fail "the drag did not move Taper Length near the right end ($after)"
shot "$work/dragged.png"
value=$(rmse "$work/dragged.png" "$work/art1.png")
say "after the drag against before: RMSE $value"
below "$value" 0.003 && fail "the picture did not change with the slider"
# The undo record of the last value, rendered afresh, must give the very picture on the screen:
# Ctrl+Z renders the value before it, Ctrl+Shift+Z renders the last value from its record.
r=$(state renders); press ctrl+z
wait_idle $(( r + 1 )) undo
r=$(state renders); press ctrl+shift+z
wait_idle $(( r + 1 )) redo
[ "$(param strokeLength)" = "$after" ] || fail "redo did not return to $after ($(param strokeLength))"
shot "$work/redone.png"
value=$(rmse "$work/redone.png" "$work/dragged.png")
say "fresh render of the last value against the screen after the drag: RMSE $value"
below "$value" 0.003 || fail "the picture after the drag is not the render of the last value (RMSE $value)"

# 4. Manual rendering: slider moves change no pixel until Render.
click renderingModeCheckbox
wait_state manual 1 || fail "the render mode checkbox did not switch to manual"
renders=$(state renders)
# Taper Length back from the right end to the left: a change that the picture shows plainly.
before=$(param strokeLength)
line=$(where strokeLengthSlider); read -r _ sx sy sw sh <<<"$line"
xdotool mousemove --sync $(( sx + sw - 7 )) $(( sy + sh - 12 ))
xdotool mousemove --sync $(( sx + sw - 12 )) $(( sy + sh - 12 )) mousedown 1 mousemove --sync $(( sx + 12 )) $(( sy + sh - 12 )) mouseup 1
sleep 2
[ "$(param strokeLength)" != "$before" ] || fail "the drag in manual mode did not move Taper Length ($before)"
[ "$(state renders)" = "$renders" ] || fail "a render ran in manual mode"
shot "$work/manual.png"
value=$(rmse "$work/manual.png" "$work/redone.png")
below "$value" 0.002 || fail "pixels changed in manual mode before Render (RMSE $value)"
click renderButton
wait_idle $((renders + 1)) render-button
shot "$work/rendered.png"
value=$(rmse "$work/rendered.png" "$work/manual.png")
say "Render button after a Taper Length change: RMSE $value"
below "$value" 0.002 && fail "the Render button did not show the change"
click renderingModeCheckbox
wait_state manual 0 || fail "the render mode checkbox did not switch back to automatic"

# 5. Zoom in, zoom out, and back to fit.
fit=$(state zoom)
click zoomInButton
zin=$(settled_state zoom "$fit")
click zoomOutButton
zmid=$(settled_state zoom "$zin")
click zoomOutButton
zout=$(settled_state zoom "$zmid")
press ctrl+0
zfit=$(settled_state zoom "$zout")
say "zoom fit $fit, in $zin, out twice $zout, fit again $zfit"
awk -v f="$fit" -v i="$zin" -v o="$zout" -v g="$zfit" 'BEGIN { exit !(i > f && o < i && o < f && (g - f) ^ 2 < 1e-6) }' \
  || fail "zoom did not go in, out and back to fit"

# 6. Randomize moves the sliders and changes the picture.
before=$(grep '^param' "$work/map.txt" | sort)
renders=$(state renders)
shot "$work/before-random.png"
click randomizeButton
wait_idle $((renders + 1)) randomize
after=$(grep '^param' "$work/map.txt" | sort)
[ "$before" != "$after" ] || fail "randomize left every setting as it was"
shot "$work/random.png"
value=$(rmse "$work/random.png" "$work/before-random.png")
say "randomize changed $(diff <(echo "$before") <(echo "$after") | grep -c '^>') settings; picture RMSE $value"
below "$value" 0.003 && fail "randomize did not change the picture"

# 7. The arrow slides the Adjust panel out of the window and back.
read -r _ px _ _ _ <<<"$(where effectControlComponent)"
read -r _ mx _ mw _ <<<"$(where mainComponent)"
click arrowRightButton
# The slide takes about a third of a second; a loaded machine may need longer.
for _ in $(seq 20); do sleep 0.5; [ -n "$(where leftArrowButton)" ] && break; done
sleep 0.5
line=$(where effectControlComponent)
if [ -n "$line" ]; then
  read -r _ cx _ _ _ <<<"$line"
  [ "$cx" -ge $(( mx + mw )) ] || fail "the panel did not leave the window (left edge $cx)"
fi
[ -n "$(where leftArrowButton)" ] || fail "no arrow to bring the panel back"
click leftArrowButton
for _ in $(seq 20); do
  sleep 0.5
  read -r _ cx _ _ _ <<<"$(where effectControlComponent)"
  [ "${cx:-}" = "$px" ] && break
done
[ "$cx" = "$px" ] || fail "the panel did not come back to $px (at $cx)"
say "the Adjust panel slid out and back to x $px"

if [ -n "$keep_shot" ]; then
  import -window "$wid" "$keep_shot" && say "window picture kept in $keep_shot"
fi
xdotool key alt+F4 >/dev/null 2>&1
kill "$pid" 2>/dev/null; wait "$pid" 2>/dev/null; pid=""
say "PASS"
