#!/usr/bin/env bash
# Crop as a user meets it, with real clicks, drags and keys on the X display in DISPLAY: the crop
# button opens the frame over a photo larger than the preview; Esc leaves the picture as it was;
# a square frame dragged by its corner and applied gives a square picture, cut at full size from
# the place the frame covered; Ctrl+Z does not bring the uncut picture back (the history holds
# settings, and a new picture starts it afresh); Ctrl+S saves the cut picture at full size.
# Usage: crop_window_test.sh <tornvale executable> <samples folder>
# Exits 77 (skipped) without a display.
set -uo pipefail
. "$(dirname "$0")/window_test_lib.sh"

app=$(realpath "$1")
samples=$(realpath "$2")

window_test_start crop_window_test xdotool import convert compare identify
mkdir -p "$work/out"
export TORNVALE_CHOOSER_FILE=$work/answer.txt
fail() {
  echo "crop_window_test: FAIL: $*"
  grep '^state\|^crop\|^shownImage\|^cropController\|^applyButton\|^Square' "$work/map.txt" 2>/dev/null
  echo "--- program log"; tail -20 "$work/app.log" 2>/dev/null
  exit 1
}
say() { echo "crop_window_test: $*"; }
settled() { # min_renders
  wait_for 240 "renders to settle" 'idle && [ "$(state renders)" -ge '"$1"' ]'
  sleep 0.6
  wait_for 60 "renders to settle" 'idle'
}
shown_size() { where shownImage | awk '{ print $4 "x" $5 }'; }
shot() { # out: a 32 x 32 thumbnail of the picture shown
  local line; line=$(where shownImage); [ -n "$line" ] || fail "no picture shown"
  import -window root "$work/screen.png"
  convert "$work/screen.png" -crop "$(echo "$line" | awk '{ printf "%dx%d+%d+%d", $4, $5, $2, $3 }')" +repage -resize '32x32!' "$1"
}
drag() { # x0 y0 x1 y1: a hand's drag, pressed, carried in steps, let go
  xdotool mousemove --sync $(( $1 - 4 )) $(( $2 - 4 ))
  xdotool mousemove --sync "$1" "$2" mousedown 1
  sleep 0.2
  for i in $(seq 1 10); do xdotool mousemove --sync $(( $1 + ($3 - $1) * i / 10 )) $(( $2 + ($4 - $2) * i / 10 )); sleep 0.03; done
  sleep 0.2
  xdotool mouseup 1
}

# A photo larger than the preview, so that a cut at full size and one at preview size differ.
convert "$samples/coffee.png" -resize '1800x1200!' "$work/big.png"
"$app" "$work/big.png" >"$work/app.log" 2>&1 &
pid=$!
wid=$(timeout 60 xdotool search --sync --onlyvisible --name "Tornvale Art - big.png" | head -1)
[ -n "$wid" ] || fail "no window within 60 s"
wait_for 60 "first map" 'test -s "$work/map.txt"'
settled 1
[ "$(state image)" = 1800x1200 ] || fail "the photo is $(state image), not 1800x1200"
before=$(shown_size)

# 1. Esc leaves without change.
click cropButton
wait_for 20 "the crop panel" '[ -n "$(where cropFrame)" ]'
press Escape
wait_for 20 "Esc to close the panel" '[ -z "$(where cropController)" ] && [ -z "$(where cropFrame)" ]'
sleep 0.6
[ "$(state image)" = 1800x1200 ] && [ "$(shown_size)" = "$before" ] || fail "Esc changed the picture to $(state image)"
say "Esc: the picture stays 1800x1200"

# 2. A square frame, its bottom-right corner dragged in and left, applied.
click cropButton
wait_for 20 "the crop panel" '[ -n "$(where cropFrame)" ]'
click Square
wait_for 20 "a square frame" 'where cropFrame | awk '\''{ exit !($4 == $5) }'\'''
read -r _ sx sy sw sh <<<"$(where shownImage)"
read -r cx cy <<<"$(centre_of cropBottomRight)"
frame0=$(where cropFrame)
drag "$cx" "$cy" $(( cx - sw / 8 )) $(( cy - sh / 3 ))
# The map is rewritten twice a second: wait for the frame to move, then to hold still.
wait_for 20 "the frame to follow the drag" '[ "$(where cropFrame)" != "$frame0" ]'
frame1=""
for _ in $(seq 20); do sleep 0.6; now=$(where cropFrame); [ "$now" = "$frame1" ] && break; frame1=$now; done
read -r _ fx fy fw fh <<<"$frame1"
[ "$fw" = "$fh" ] || fail "the dragged square frame is $fw x $fh"
[ "$fw" -lt $(( sh * 8 / 10 - 10 )) ] || fail "the corner drag did not shrink the frame ($fw)"
# Where the frame lies on the photo, in its pixels, and the size a full-size cut must have.
geom=$(awk -v fx="$fx" -v fy="$fy" -v fw="$fw" -v sx="$sx" -v sy="$sy" -v sw="$sw" \
  'BEGIN { s = 1800 / sw; printf "%dx%d+%d+%d", fw * s, fw * s, (fx - sx) * s, (fy - sy) * s }')
renders=$(state renders)
click applyButton
wait_for 30 "Apply to cut the picture" '[ "$(state image)" != 1800x1200 ]'
[ -z "$(where cropController)" ] || fail "the crop panel stayed open after Apply"
cut=$(state image)
w=${cut%x*}; h=${cut#*x}
[ "$w" = "$h" ] || fail "the cut picture is $cut, not square"
expected=${geom%%x*}
[ $(( w - expected )) -le 4 ] && [ $(( expected - w )) -le 4 ] || fail "the cut is $w wide; the frame covers $expected photo pixels"
settled $(( renders + 1 ))
read -r _ _ _ vw vh <<<"$(where shownImage)"
[ "$vw" -gt 0 ] && [ $(( vw - vh )) -le 1 ] && [ $(( vh - vw )) -le 1 ] || fail "the view shows $vw x $vh"
say "square frame $fw x $fh view pixels -> picture $cut (frame on the photo: $geom)"

# The cut is the place the frame covered: hold "original" and compare with the same cut of the photo.
point_at originalButton; xdotool mousedown 1
wait_for 20 "the original to show" '[ "$(state original)" = 1 ]'
# The pointer stays on the button: a button held and left shows the effect again.
sleep 0.8
shot "$work/shown.png"
[ "$(state original)" = 1 ] || fail "the original was let go before the picture was taken"
xdotool mouseup 1
convert "$work/big.png" -crop "$geom" +repage -resize '32x32!' "$work/expected.png"
convert "$work/big.png" -resize '32x32!' "$work/whole.png"
near=$(rmse "$work/shown.png" "$work/expected.png"); far=$(rmse "$work/shown.png" "$work/whole.png")
say "shown original against the same cut of the photo: RMSE $near (against the whole photo: $far)"
below "$near" 0.05 || fail "the picture shown is not the part of the photo the frame covered (RMSE $near)"
below "$near" "$far" || fail "the picture shown is closer to the whole photo than to the cut"

# 3. The history starts afresh with the cut: Ctrl+Z keeps it.
wait_for 20 "the original to go" '[ "$(state original)" = 0 ]'
press ctrl+z; sleep 1
[ "$(state image)" = "$cut" ] || fail "Ctrl+Z changed the picture to $(state image)"
say "Ctrl+Z: the picture stays $cut"

# 4. Ctrl+S saves the cut at full size.
press_answered "$work/out/cut.png" ctrl+s
wait_for 120 "Ctrl+S" 'test -s "$work/out/cut.png"'
wait_for 60 "the save to end" 'idle'
saved=$(identify -format '%wx%h' "$work/out/cut.png")
[ "$saved" = "$cut" ] || fail "the saved picture is $saved, not $cut"
say "Ctrl+S: cut.png is $saved"
echo "crop_window_test: PASS"
