#!/usr/bin/env bash
# The program as a user meets it, on the X display in DISPLAY:
#   start with a picture, see it in the window, click and type, launch a second time with another
#   picture (which must end at once and hand the picture over), move the window, close it by its
#   close button, and find the settings written and the working file gone; then start again and
#   find the window where it was left.
# Usage: window_test.sh <tornvale executable> <samples folder>
# Exits 77 (skipped) without a display.
set -uo pipefail
. "$(dirname "$0")/window_test_lib.sh"

app=$(realpath "$1")
samples=$(realpath "$2")

if [ -z "${DISPLAY:-}" ]; then
  echo "window_test: no DISPLAY, skipped"
  exit 77
fi
for tool in xdotool import convert compare; do
  command -v "$tool" >/dev/null || { echo "window_test: $tool missing"; exit 1; }
done

work=$(mktemp -d)
export HOME=$work/home
unset XDG_CONFIG_HOME
mkdir -p "$HOME"
data="$HOME/.config/Tornvale Art"
# Renders start by hand here, so the view shows the photo itself: this test is about the window,
# the second launch and the settings, and compares the screen with the photo.
mkdir -p "$data"
cat >"$data/Tornvale Art.plist" <<'SETTINGS'
<?xml version="1.0" encoding="UTF-8"?>
<PROPERTIES>
  <VALUE name="manualRedraw" val="1"/>
</PROPERTIES>
SETTINGS
pid=""

cleanup() {
  if [ -n "$pid" ] && kill -0 "$pid" 2>/dev/null; then kill "$pid"; fi
  release_input
  if [ -n "${KEEP_WINDOW_TEST:-}" ]; then echo "window_test: files kept in $work"; else rm -rf "$work"; fi
}
trap cleanup EXIT
release_input

fail() {
  echo "window_test: FAIL: $*"
  echo "--- program log"; cat "$work/app.log" 2>/dev/null
  exit 1
}

# A 16 × 16 thumbnail of the centre 80% of a picture, and the same of the screen where the window
# should show it. The window draws the picture about 1.07× enlarged, so the thumbnails differ only
# by resampling and by a pixel or two of placement; a wrong or missing picture differs by far more.
# Normalised RMSE below 0.05 counts as the same picture (measured: about 0.01 when right, 0.2 and
# more for the other sample or an empty view).
tolerance=0.05

thumb_of_picture() { convert "$1" -gravity center -crop 80%x80%+0+0 +repage -resize '16x16!' "$2"; }



geometry() { eval "$(xdotool getwindowgeometry --shell "$1")"; }

# Crops the picture's place out of a screenshot. The content is the window less its border and
# 22-pixel title bar; the document is at 30, 34 in it, 300 narrower than the content, and ends
# where the preset strip (158 high) begins;
# the picture is fitted into 95% of it and centred.
thumb_of_screen() { # shot picture_width picture_height out
  geometry "$wid"
  local border=$(( (WIDTH - content_width) / 2 ))
  local cx=$(( X + border )) cy=$(( Y + HEIGHT - border - content_height ))
  awk -v cx="$cx" -v cy="$cy" -v cw="$content_width" -v ch="$content_height" -v pw="$2" -v ph="$3" 'BEGIN {
    dw = cw - 300; dh = ch - 158 - 34
    z = dw * 0.95 / pw; if (dh * 0.95 / ph < z) z = dh * 0.95 / ph
    iw = pw * z; ih = ph * z
    ix = cx + 30 + (dw - iw) / 2; iy = cy + 34 + (dh - ih) / 2
    printf "%dx%d+%d+%d\n", iw * 0.8, ih * 0.8, ix + iw * 0.1, iy + ih * 0.1 }' > "$work/crop"
  convert "$1" -crop "$(cat "$work/crop")" +repage -resize '16x16!' "$4"
}

# Waits until the screen shows the picture (the first paint may trail the window's mapping).
expect_picture() { # picture width height label
  local tries=0 value
  thumb_of_picture "$1" "$work/ref.png"
  while :; do
    import -window root "$work/shot-$4.png"
    thumb_of_screen "$work/shot-$4.png" "$2" "$3" "$work/screen.png"
    value=$(rmse "$work/screen.png" "$work/ref.png")
    below "$value" "$tolerance" && break
    tries=$((tries + 1))
    [ $tries -ge 20 ] && fail "$4: screen differs from $(basename "$1") by RMSE $value (tolerance $tolerance)"
    sleep 0.5
  done
  echo "window_test: $4: screen matches $(basename "$1"), RMSE $value"
  other=$(rmse "$work/screen.png" "$work/other.png")
  echo "window_test: $4: against the other sample, RMSE $other"
  below "$other" "$tolerance" && fail "$4: the two samples cannot be told apart"
}

# Clicks the close button at the right end of the title bar and waits for the program to end. The
# pointer comes from elsewhere, as a user's would: a window mapped under a resting pointer gets
# no motion, and a press without one does not reach the button.
close_window() {
  geometry "$wid"
  local border=$(( (WIDTH - content_width) / 2 ))
  xdotool mousemove --sync $(( X + WIDTH / 2 )) $(( Y + HEIGHT / 2 ))
  xdotool mousemove --sync $(( X + WIDTH - border - 12 )) $(( Y + border + 11 )) click 1
  for _ in $(seq 150); do kill -0 "$pid" 2>/dev/null || break; sleep 0.1; done
  kill -0 "$pid" 2>/dev/null && fail "the close button did not end the program"
  wait "$pid"; rc=$?; pid=""
  [ $rc -eq 0 ] || fail "exit code $rc after closing"
}

wait_window() { # name pattern
  wid=$(timeout 60 xdotool search --sync --onlyvisible --name "$1" | head -1)
  [ -n "$wid" ] || fail "no window named $1 within 60 s"
}

display_width=$(xdotool getdisplaygeometry | cut -d' ' -f1)
content_width=$(( display_width * 3 / 10 )); content_height=$(( content_width * 65 / 100 ))
[ $content_width -gt 1920 ] && content_width=1920
[ $content_width -lt 1024 ] && content_width=1024
[ $content_height -lt 601 ] && content_height=601

# 1. Start with a picture.
"$app" "$samples/coffee.png" >"$work/app.log" 2>&1 &
pid=$!
wait_window "Tornvale Art - coffee.png"
geometry "$wid"
echo "window_test: window $wid at $X,$Y, $WIDTH x $HEIGHT (content $content_width x $content_height)"
thumb_of_picture "$samples/chelsea.png" "$work/other.png"
expect_picture "$samples/coffee.png" 600 400 start

# 2. Real input: a click on the picture and a key press; the program must stay up and unchanged.
xdotool windowfocus --sync "$wid" 2>/dev/null || xdotool windowfocus "$wid"
xdotool mousemove --sync $(( X + 300 )) $(( Y + 250 )) click 1
xdotool key space
xdotool key Escape
sleep 0.5
kill -0 "$pid" 2>/dev/null || fail "the program ended after a click and a key press"
expect_picture "$samples/coffee.png" 600 400 input

# 3. A second launch hands its picture over and ends without a window of its own.
start=$(date +%s%N)
( cd "$samples" && timeout 20 "$app" chelsea.png ) >"$work/second.log" 2>&1
second_rc=$?
elapsed=$(( ($(date +%s%N) - start) / 1000000 ))
echo "window_test: second launch ended with $second_rc after $elapsed ms"
[ $second_rc -eq 0 ] || fail "second launch exit code $second_rc: $(cat "$work/second.log")"
[ $elapsed -lt 5000 ] || fail "second launch took $elapsed ms"
windows=$(xdotool search --onlyvisible --name "Tornvale Art" | wc -l)
[ "$windows" -eq 1 ] || fail "$windows windows after the second launch"
for _ in $(seq 50); do
  [ "$(xdotool getwindowname "$wid")" = "Tornvale Art - chelsea.png" ] && break
  sleep 0.1
done
[ "$(xdotool getwindowname "$wid")" = "Tornvale Art - chelsea.png" ] || fail "title is $(xdotool getwindowname "$wid")"
cp "$work/ref.png" "$work/other.png" # coffee is now the wrong picture
expect_picture "$samples/chelsea.png" 451 300 forwarded
[ -f "$data/origBeforeEdit.tmp" ] || fail "no origBeforeEdit.tmp while a picture is open"

# 4. Move the window, then close it with its close button (right end of the title bar).
xdotool windowmove --sync "$wid" 100 80 2>/dev/null || xdotool windowmove "$wid" 100 80
sleep 0.5
close_window

settings="$data/Tornvale Art.plist"
[ -f "$settings" ] || fail "no settings file at $settings"
grep -q 'name="lastVersionNumber" val="65809"' "$settings" || fail "lastVersionNumber not 65809: $(cat "$settings")"
grep -Eq 'name="windowSavedState" val="[^"]+"' "$settings" || fail "no windowSavedState: $(cat "$settings")"
[ -e "$data/origBeforeEdit.tmp" ] && fail "origBeforeEdit.tmp left behind"
echo "window_test: closed with 0; settings: $(grep -o 'name="windowSavedState" val="[^"]*"' "$settings")"

# 5. The next start puts the window back where it was left. A render request whose input does not
#    exist is dropped, so this start is an ordinary one with an empty document.
"$app" -r "$work/missing.png,$work/out.png" >"$work/app.log" 2>&1 &
pid=$!
wait_window "^Tornvale Art$"
geometry "$wid"
[ "$X" -eq 100 ] && [ "$Y" -eq 80 ] || fail "window restored at $X,$Y instead of 100,80"
close_window
# The last picture opened (chelsea, by the second launch) left one history record, its start
# state, and no change: the count restarts at each open, and the project stays fresh.
grep -q 'name="freshProjectUndoCount" val="1"' "$settings" || fail "freshProjectUndoCount not 1: $(cat "$settings")"
grep -q 'name="freshProject" val="1"' "$settings" || fail "freshProject not set: $(cat "$settings")"

# 6. A render request for an existing picture renders it at full size with the default settings,
#    saves it and quits; a second request numbers its output instead of replacing the first.
timeout 120 "$app" -r "$samples/coffee.png,$work/out.png" >"$work/render.log" 2>&1
rc=$?
[ $rc -eq 0 ] || fail "render request ended with $rc: $(cat "$work/render.log")"
[ "$(identify -format '%w %h' "$work/out.png")" = "600 400" ] || fail "render request wrote no 600 x 400 picture"
timeout 120 "$app" -r "$samples/coffee.png,$work/out.png" >"$work/render2.log" 2>&1 || fail "second render failed"
[ -f "$work/out (1).png" ] || fail "second render did not number its output: $(ls "$work")"
# Without a display the same job runs without a window.
env -u DISPLAY timeout 120 "$app" -r "$samples/chelsea.png,$work/headless" >"$work/render3.log" 2>&1 \
    || fail "headless render failed: $(cat "$work/render3.log")"
[ -f "$work/headless.png" ] || fail "headless render did not take the input's extension: $(ls "$work")"
echo "window_test: render requests wrote out.png, out (1).png and headless.png"
echo "window_test: PASS"
