#!/usr/bin/env bash
# The preset strip as a user meets it, with real clicks and keys, in a fresh home folder: the 27
# built-in thumbnails with labels; a click applies a preset (sliders and picture follow, Ctrl+Z
# goes back); two quick clicks apply only the second; saving adds a thumbnail with its own
# preview, and saving the same name asks first and leaves one file; the large picture comes up
# on hover and goes on leaving or after ten seconds; a long press starts the delete mode, a
# favourite moves first, a delete removes the file and its picture; Tab hides and shows the
# panels; deleting the last preset ends the delete mode.
# Usage: preset_strip_test.sh <tornvale executable> <samples folder>
# Exits 77 (skipped) without a display.
set -uo pipefail
. "$(dirname "$0")/window_test_lib.sh"

app=$(realpath "$1")
samples=$(realpath "$2")
window_test_start preset_strip_test xdotool
folder="$HOME/.config/Tornvale Art/EffectPresets/Tornvale"
fail() {
  echo "preset_strip_test: FAIL: $*"
  grep -E '^(presetStrip|presetManager|presetThumb|presetDelete|presetFavourite|presetHoverBox|state) ' "$work/map.txt" 2>/dev/null | head -40
  echo "--- program log"; tail -20 "$work/app.log" 2>/dev/null
  exit 1
}
say() { echo "preset_strip_test: $*"; }

strip() { awk -v k="$1" '$1 == "presetStrip" { for (i = 2; i <= NF; i++) { split($i, p, "="); if (p[1] == k) print p[2] } }' "$work/map.txt"; }
thumbs() { awk '$1 == "presetThumb" { print $2 }' "$work/map.txt"; }
# "x y" of the centre of a badge or thumbnail line: kind name
spot() { awk -v k="$1" -v n="$2" '$1 == k && $2 == n { printf "%d %d\n", $3 + $5 / 2, $4 + $6 / 2; exit }' "$work/map.txt"; }
click_preset() { local s; s=$(spot presetThumb "$1"); [ -n "$s" ] || fail "no thumbnail $1 in view"; click_at "$s"; }
# The eleven values of a preset file as "key=value" lines ("VER2": 8 bytes of header, then
# zero-terminated keys and values).
preset_values() {
  tail -c +9 "$1" | tr '\0' '\n' | paste -d= - - | grep -E '^(preSharpen|preSharpenSize|colorizeEdges|strokeLength|sharpen|brightenLight|postSharpen|saturation|contrast|smoothing|strokeStyle)='
}
# The effect's values and the sliders both show the preset's values (sliders to the 1/1000).
shows_preset() { # file
  local kv key value slider
  while IFS== read -r key value; do
    awk -v a="$(param "$key")" -v b="$value" 'BEGIN { d = a - b; exit !(d < 1e-4 && d > -1e-4) }' || return 1
    case $key in
      preSharpen) slider=preSharpenSlider ;; colorizeEdges) slider=colorizeSlider ;; strokeLength) slider=strokeLengthSlider ;;
      sharpen) slider=lightenSlider ;; brightenLight) slider=brightenLightSlider ;; postSharpen) slider=postSharpenSlider ;;
      saturation) slider=saturationSlider ;; contrast) slider=contrastSlider ;; smoothing) slider=smoothingSlider ;; *) continue ;;
    esac
    kv=$(awk -v n="$slider" '$1 == "slider" && $2 == n { print $3; exit }' "$work/map.txt")
    awk -v a="$kv" -v b="$value" 'BEGIN { d = a - b; exit !(a != "" && d < 1e-3 && d > -1e-3) }' || return 1
  done < <(preset_values "$1")
}
renders_after() { [ "$(state renders)" -gt "$1" ] 2>/dev/null && idle; }
start() {
  "$app" "$samples/coffee.png" >>"$work/app.log" 2>&1 &
  pid=$!
  wid=$(timeout 60 xdotool search --sync --onlyvisible --name "Tornvale Art" | head -1)
  [ -n "$wid" ] || fail "no window within 60 s"
  wait_for 60 "the first render" 'test "$(state renders)" -ge 1 2>/dev/null && idle'
  focus
}

# 1. A fresh home folder: the built-ins are installed and shown with labels and pictures.
start
[ "$(ls "$folder"/*.pre | wc -l)" = 27 ] && [ "$(ls "$folder"/*.jpg | wc -l)" = 27 ] || fail "the built-ins were not installed"
[ "$(strip count)" = 27 ] || fail "the strip holds $(strip count) presets"
[ "$(grep -c '^presetLabel ' "$work/map.txt")" = 27 ] || fail "not 27 labels"
[ "$(awk '$1 == "presetThumb" && $7 != 1' "$work/map.txt" | wc -l)" = 0 ] || fail "a thumbnail in view has no picture"
say "27 thumbnails with labels; $(thumbs | wc -l) in view"

# 2. A click applies a preset: the values, the sliders and the picture follow; Ctrl+Z goes back.
before=$(params); r=$(state renders)
click_preset 05_Colorize_Medium
wait_for 60 "the preset to apply" "shows_preset '$folder/05 Colorize Medium.pre' && renders_after $r"
[ "$(strip selected)" = 05_Colorize_Medium ] || fail "the selection border is not on the clicked preset"
press ctrl+z
wait_for 30 "Ctrl+Z after a preset" '[ "$(params)" = "$before" ] && idle'
say "a click applied 05 Colorize Medium and rendered; Ctrl+Z went back"

# 3. Two quick clicks apply only the second: one step back returns to the state before both.
before=$(params)
set -- $(spot presetThumb 02_Tornvale) $(spot presetThumb 07_Colorize_Glow)
xdotool mousemove "$1" "$2" click 1 mousemove "$3" "$4" click 1
wait_for 60 "the second preset" "shows_preset '$folder/07 Colorize Glow.pre' && idle"
press ctrl+z
wait_for 30 "Ctrl+Z after two clicks" '[ "$(params)" = "$before" ] && idle'
say "two quick clicks applied only the second"

# 4. The large picture: up on hover, gone on leaving, and gone by itself after ten seconds.
s=$(spot presetThumb 03_Tornvale)
xdotool mousemove --sync 1 1; sleep 0.5
set -- $s; xdotool mousemove --sync $(( $1 - 6 )) $(( $2 - 3 )); xdotool mousemove --sync "$1" "$2"
wait_for 10 "the hover picture" '[ "$(strip hover)" = 03_Tornvale ] && grep -q "^presetHoverBox" "$work/map.txt"'
xdotool mousemove --sync 1 1
wait_for 5 "the hover picture to close on leaving" '[ "$(strip hover)" = none ]'
set -- $s; xdotool mousemove --sync $(( $1 - 6 )) $(( $2 - 3 )); xdotool mousemove --sync "$1" "$2"
wait_for 10 "the hover picture again" '[ "$(strip hover)" = 03_Tornvale ]'
sleep 9
wait_for 5 "the hover picture to close by itself" '[ "$(strip hover)" = none ]'
xdotool mousemove --sync 1 1
say "hover picture opened, closed on leaving and after ten seconds"

# 5. Save: a new thumbnail with its own preview; the same name asks first and leaves one file.
wait_for 30 "renders to end" 'idle'
# Now and then a click on this button right after a render started from the top bar is not
# seen (the focus then sits on the pan tool; the commands test has met the same): it is sent
# again, and the map's trace says how often.
save_as() {
  local try
  for try in 1 2 3; do
    click addPresetButton
    for _ in $(seq 20); do [ -n "$(where presetNamePanel)" ] && break 2; sleep 0.25; done
    say "the name panel did not open on click $try (focus $(state focus))"
  done
  wait_for 5 "the name panel" 'test -n "$(where presetNamePanel)"'
  xdotool key ctrl+a; xdotool type --delay 30 "$1"; xdotool key Return
}
save_as "00 Strip Test"
saved="$folder/00 Strip Test.pre"
wait_for 20 "the saved preset in the strip" 'test -s "$saved" && [ "$(thumbs | head -1)" = 00_Strip_Test ] && [ "$(strip count)" = 28 ]'
head -c 4 "$saved" | grep -q VER3 || fail "the saved preset is not VER3"
[ -e "$folder/00 Strip Test.jpg" ] && fail "a companion picture was written"
[ "$(awk '$1 == "presetThumb" && $2 == "00_Strip_Test" { print $7 }' "$work/map.txt")" = 1 ] || fail "the saved preset has no picture"
cp "$saved" "$work/first.pre"
r=$(state renders); click randomizeButton
wait_for 60 "randomize to render" "renders_after $r"
save_as "00 Strip Test"
wait_for 10 "the replace question" '[ "$(state alert)" = replacePresetAlert ]'
cmp -s "$saved" "$work/first.pre" || fail "the file changed before the answer"
press Return
wait_for 20 "the replaced file" '! cmp -s "$saved" "$work/first.pre"'
[ "$(ls "$folder" | grep -c '^00 Strip Test')" = 1 ] || fail "replace left $(ls "$folder" | grep '^00 Strip Test')"
wait_for 10 "the strip after replace" '[ "$(strip count)" = 28 ]'
say "saved 00 Strip Test with its own preview; saving again asked, then replaced it"

# 6. Long press: the delete mode; a favourite moves first; a delete removes file and picture.
s=$(spot presetThumb 04_Tornvale); set -- $s
xdotool mousemove --sync $(( $1 - 6 )) $2; xdotool mousemove --sync "$1" "$2" mousedown 1; sleep 1.6; xdotool mouseup 1
wait_for 10 "the delete mode" '[ "$(strip deleteMode)" = 1 ] && grep -q "^presetDelete" "$work/map.txt"'
click_at "$(spot presetFavourite 05_Colorize_Medium)"
click_at "$(spot presetDelete 01_Tornvale)"
wait_for 10 "the delete" '! test -e "$folder/01 Tornvale.pre" && [ "$(strip count)" = 27 ]'
[ -e "$folder/01 Tornvale.jpg" ] && fail "the deleted preset's picture stayed"
[ "$(strip deleteMode)" = 1 ] || fail "a delete ended the delete mode"
# A click on the strip beside the thumbnails ends the mode; the rebuild puts the favourite first.
s=$(spot presetThumb 04_Tornvale); set -- $s; click_at "$1 $(( $2 + 52 ))"
wait_for 10 "the favourite first" '[ "$(strip deleteMode)" = 0 ] && [ "$(thumbs | head -1)" = 05_Colorize_Medium ]'
grep -q 'presetFavString" val="05 Colorize Medium;' "$HOME/.config/Tornvale Art/Tornvale Art.plist" || fail "the favourite was not stored"
say "long press: delete mode; 01 Tornvale deleted with its picture; 05 Colorize Medium first"

# 7. Tab hides both panels and shows them again.
press Tab
wait_for 10 "the panels to hide" 'grep -q "^presetManager open=0 sliding=0" "$work/map.txt" && test -n "$(where upArrowButton)"'
press Tab
wait_for 10 "the panels to come back" 'grep -q "^presetManager open=1 sliding=0" "$work/map.txt" && test -n "$(where effectTabSegmentTitleBar)"'
say "Tab hid and showed both panels"

# 8. One preset left: deleting it ends the delete mode and leaves an empty strip.
press ctrl+q
for _ in $(seq 60); do kill -0 "$pid" 2>/dev/null || break; sleep 0.5; done
wait "$pid" 2>/dev/null; pid=""; rm -f "$work/map.txt"
find "$folder" -name '*.pre' ! -name '02 Tornvale.pre' -delete
start
[ "$(strip count)" = 1 ] || fail "the strip holds $(strip count) presets, not 1"
s=$(spot presetThumb 02_Tornvale); set -- $s
xdotool mousemove --sync $(( $1 - 6 )) $2; xdotool mousemove --sync "$1" "$2" mousedown 1; sleep 1.6; xdotool mouseup 1
wait_for 10 "the delete mode" '[ "$(strip deleteMode)" = 1 ]'
click_at "$(spot presetDelete 02_Tornvale)"
wait_for 10 "the last delete to end the mode" '[ "$(strip count)" = 0 ] && [ "$(strip deleteMode)" = 0 ]'
say "deleting the last preset ended the delete mode"
say "PASS"
