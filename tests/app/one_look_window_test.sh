#!/usr/bin/env bash
# One look on every road, with a photo of 4000 pixels: the window's full-size Save Photo, the
# command that Edit > Copy Render Command puts on the clipboard (run in a shell), tornvale-render
# on the window's saved project and the application's "-r project,output" write the same picture.
# Usage: one_look_window_test.sh <tornvale> <tornvale-render> <samples folder>
# Exits 77 (skipped) without a display.
set -uo pipefail
. "$(dirname "$0")/window_test_lib.sh"

app=$(realpath "$1")
render=$(realpath "$2")
samples=$(realpath "$3")
window_test_start one_look_window_test xdotool xclip convert compare identify
mkdir -p "$work/out"
export TORNVALE_CHOOSER_FILE=$work/answer.txt
fail() {
  echo "one_look_window_test: FAIL: $*"
  report_program
  exit 1
}
say() { echo "one_look_window_test: $*"; }
rendered() { wait_for 240 "the render" "idle && [ \"\$(state renders)\" -ge $1 ]"; }
same() { [ "$(compare -metric AE "$1" "$2" null: 2>&1)" = 0 ]; }

convert "$samples/coffee.png" -filter Lanczos -resize 4000x "$work/big.png"
"$app" "$work/big.png" >>"$work/app.log" 2>&1 &
pid=$!
wid=$(timeout 60 xdotool search --sync --onlyvisible --name "Tornvale Art" | head -1)
[ -n "$wid" ] || fail "no window within 60 s"
wait_for 60 "the photo" 'test "$(state image)" = 4000x2667'
rendered 1
# A new effect starts at random settings: no road can pass by falling back to the defaults.
[ "$(param smoothing)" != 0.25 ] || [ "$(param strokeLength)" != 0.5 ] || fail "the effect starts at its defaults"

# File > Save Project (the fourth command with a photo open).
echo "$work/out/look" >"$work/answer.txt"
menu_keys 20 Down Down Down Down Return
wait_for 120 "Save Project" 'test -s "$work/out/look.qhp" && idle'

# Edit > Copy Render Command: the last item of the second menu.
menu_keys 70 Up Return
wait_for 10 "the clipboard" 'xclip -o -selection clipboard >"$work/command.txt" && grep -q -- "--size full" "$work/command.txt"'
say "copied: $(cat "$work/command.txt")"
[ "$(grep -o -- '--set [a-zA-Z]*=' "$work/command.txt" | wc -l)" = 11 ] || fail "the command does not set all eleven parameters"

# Save Photo at full size.
press_answered "$work/out/window.png" ctrl+s
wait_for 200 "Save Photo" 'test -s "$work/out/window.png" && idle'
press ctrl+q
wait "$pid" 2>/dev/null; pid=""
[ "$(identify -format '%w %h' "$work/out/window.png")" = "4000 2667" ] || fail "the saved photo is not 4000 x 2667"

# The three other roads, outside the window.
(cd "$work" && bash -c "$(cat "$work/command.txt")") 2>>"$work/app.log" || fail "the copied command failed"
"$render" -o "$work/out/cli.png" "$work/out/look.qhp" 2>>"$work/app.log" || fail "tornvale-render of the project failed"
env -u DISPLAY "$app" -r "$work/out/look.qhp,$work/out/r.png" 2>>"$work/app.log" || fail "-r of the project failed"

# The document is the saved project now, so the command names it and writes beside it.
same "$work/out/window.png" "$work/out/look_tornvale.png" || fail "the copied command's picture differs from Save Photo's"
same "$work/out/window.png" "$work/out/cli.png" || fail "tornvale-render's picture of the project differs from Save Photo's"
same "$work/out/window.png" "$work/out/r.png" || fail "-r's picture of the project differs from Save Photo's"
say "PASS: Save Photo, the copied command, tornvale-render and -r give the same 4000 x 2667 picture"
