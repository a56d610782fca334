#!/usr/bin/env bash
# The commands as a user meets them, on the X display in DISPLAY, with real keys and clicks:
# with no photo open the save, undo and zoom commands are off and "Get Photo..." is on; Ctrl+O
# opens a photo; Ctrl+Z and Ctrl+Shift+Z walk the history; Ctrl+S saves the photo at full size
# with its resolution, and a name without an extension becomes a PNG; Ctrl+Shift+S saves a preset
# under a typed name; "Save Project" from the File menu, Ctrl+Q, a new start and "Open Project"
# bring back every setting and the picture without a question; after one change, opening asks
# whether to save.
#
# File dialogs are answered through TORNVALE_CHOOSER_FILE: the script writes the path the dialog
# should return into that file before it presses the key. Controls, settings, the enable state of
# every command and what the program is doing come from the map in TORNVALE_COMPONENT_MAP.
# Usage: commands_window_test.sh <tornvale executable> <samples folder>
# Exits 77 (skipped) without a display.
set -uo pipefail
test_name=commands_window_test
. "$(dirname "$0")/window_test_lib.sh"

app=$(realpath "$1")
samples=$(realpath "$2")

if [ -z "${DISPLAY:-}" ]; then
  echo "commands_window_test: no DISPLAY, skipped"
  exit 77
fi
for tool in xdotool import convert compare identify; do
  command -v "$tool" >/dev/null || { echo "commands_window_test: $tool missing"; exit 1; }
done

work=$(mktemp -d)
export HOME=$work/home
unset XDG_CONFIG_HOME
mkdir -p "$HOME" "$work/out"
export TORNVALE_COMPONENT_MAP=$work/map.txt
export TORNVALE_CHOOSER_FILE=$work/answer.txt
pid=""
# The X server resets itself when its last client leaves, and refuses connections meanwhile;
# between the quit and the next start this client keeps it up.
keeper=""
if command -v xprop >/dev/null; then xprop -root -spy >/dev/null 2>&1 & keeper=$!; fi

cleanup() {
  if [ -n "$pid" ] && kill -0 "$pid" 2>/dev/null; then kill "$pid"; fi
  release_input
  if [ -n "$keeper" ]; then kill "$keeper" 2>/dev/null; fi
  if [ -n "${KEEP_WINDOW_TEST:-}" ]; then echo "commands_window_test: files kept in $work"; else rm -rf "$work"; fi
}
trap cleanup EXIT
release_input

fail() {
  echo "commands_window_test: FAIL: $*"
  echo "--- component map"; grep -v '^param\|^command\|^state' "$work/map.txt" 2>/dev/null | grep -v '^Sx\|Slider\|Segment' | head -40
  grep '^command' "$work/map.txt" 2>/dev/null
  [ -s "$work/trace.txt" ] && { echo "--- states seen while waiting"; tail -20 "$work/trace.txt"; }
  report_program
  exit 1
}
say() { echo "commands_window_test: $*"; }

enabled() { awk -v id="$1" '$1 == "command" && $2 == id { print $3; exit }' "$work/map.txt"; }

# A render at this size takes about a second; the limit is wide because a shared machine may
# starve the program for a while, and the trace of states says what it was doing meanwhile.
settled() { # min_renders
  local last=-1 stable=0 seen="" end=$(( $(date +%s) + 240 ))
  : >"$work/trace.txt"
  while :; do
    local now; now=$(grep '^state' "$work/map.txt" 2>/dev/null)
    if [ "$now" != "$seen" ]; then echo "$(date +%T) $now" >>"$work/trace.txt"; seen=$now; fi
    if idle && [ "$(state renders)" -ge "$1" ] 2>/dev/null; then
      if [ "$(state renders)" = "$last" ]; then stable=$((stable + 1)); else stable=0; fi
      last=$(state renders)
      [ $stable -ge 2 ] && return 0
    fi
    [ "$(date +%s)" -ge "$end" ] && fail "renders did not settle within 240 s ($(grep '^state' "$work/map.txt"))"
    sleep 0.5
  done
}
# The dice, and the render it starts. The count is read before the click: click waits until the
# program took the press, and by then the render may have ended.
dice() { local before; before=$(state renders); click randomizeButton; settled $(( before + 1 )); }
shot() { # out: a 32 x 32 thumbnail of the picture shown
  local line; line=$(where shownImage); [ -n "$line" ] || fail "no picture shown"
  xdotool mousemove --sync 1 1; sleep 0.4
  import -window root "$work/screen.png"
  convert "$work/screen.png" -crop "$(echo "$line" | awk '{ printf "%dx%d+%d+%d", $4, $5, $2, $3 }')" +repage -resize '32x32!' "$1"
}
answer() { echo "$1" >"$work/answer.txt"; }
# Opens a menu of the menu bar by a click and picks its nth command with the arrow keys.
menu_pick() { # menu-x-offset downs
  local downs=() i
  for i in $(seq 1 "$2"); do downs+=(Down); done
  menu_keys "$1" "${downs[@]}" Return
}
start() { # [file]
  "$app" "$@" >>"$work/app.log" 2>&1 &
  pid=$!
  wid=$(timeout 60 xdotool search --sync --onlyvisible --name "Tornvale Art" | head -1)
  [ -n "$wid" ] || fail "no window within 60 s"
  wait_for 30 "first map" 'test -s "$work/map.txt"'
  focus
}
quit() {
  press ctrl+q
  local n=0
  while kill -0 "$pid" 2>/dev/null; do
    n=$((n + 1)); [ $n -ge 60 ] && fail "Ctrl+Q did not end the program"
    sleep 0.5
  done
  wait "$pid" 2>/dev/null; pid=""
  rm -f "$work/map.txt"
}

# 1. No photo: the commands that need one are off, "Get Photo..." is on.
start
sleep 1
[ "$(state image)" = none ] || fail "a photo is open at start"
for id in 8193 8194 8195 12289 12290 12291 12292 20481 8192; do
  [ "$(enabled $id)" = 0 ] || fail "command $id is on with no photo"
done
[ "$(enabled 8209)" = 1 ] || fail "Get Photo... is off with no photo"
[ "$(enabled 20480)" = 1 ] || fail "Open Project is off"
# Ctrl+S does nothing now: the dialog's answer stays unused.
answer "$work/out/never.png"
press ctrl+s; sleep 1
[ -f "$work/answer.txt" ] || fail "Ctrl+S with no photo asked for a file"
rm -f "$work/answer.txt"
say "no photo: save, undo, zoom off; Get Photo... on"

# 2. Ctrl+O opens the photo.
press_answered "$samples/coffee.png" ctrl+o
wait_for 30 "Ctrl+O" 'test "$(state image)" = 600x400'
settled 1
[ "$(enabled 8193)" = 1 ] || fail "Save Photo... is off with a photo open"

# 3. Two changes, then Ctrl+Z twice and Ctrl+Shift+Z twice walk the records.
p0=$(params); u0=$(state undo)
dice; p1=$(params)
dice; p2=$(params)
[ "$p1" != "$p0" ] && [ "$p2" != "$p1" ] || fail "randomize did not change the settings"
# Each key is pressed once the last render has ended, as a user waiting for the picture would.
key_when_idle() { wait_for 60 "renders to end" 'idle'; sleep 0.3; press "$1"; }
key_when_idle ctrl+z; wait_for 30 "Ctrl+Z to the second record" '[ "$(params)" = "$p1" ]'
key_when_idle ctrl+z; wait_for 30 "Ctrl+Z to the first record" '[ "$(params)" = "$p0" ]'
[ "$(state undo)" = "$u0" ] || fail "undo index $(state undo), expected $u0"
key_when_idle ctrl+shift+z; wait_for 30 "Ctrl+Shift+Z forward" '[ "$(params)" = "$p1" ]'
key_when_idle ctrl+shift+z; wait_for 30 "Ctrl+Shift+Z to the newest record" '[ "$(params)" = "$p2" ]'
# A step past the newest record does nothing.
key_when_idle ctrl+shift+z; sleep 1; [ "$(params)" = "$p2" ] || fail "Ctrl+Shift+Z went past the newest record"
settled 1
say "Ctrl+Z / Ctrl+Shift+Z walked records $u0..$(state undo)"

# 4. Ctrl+S saves the photo at full size with its resolution; without an extension it is a PNG.
source_res=$(identify -units PixelsPerInch -format '%x' "$samples/coffee.png" | awk '{ printf "%.0f", $1 }')
press_answered "$work/out/art.tif" ctrl+s
wait_for 60 "Ctrl+S to TIFF" 'test -s "$work/out/art.tif"'
wait_for 30 "the save to end" 'idle'
read -r w h x y <<<"$(identify -units PixelsPerInch -format '%w %h %x %y' "$work/out/art.tif" | awk '{ printf "%d %d %.0f %.0f", $1, $2, $3, $4 }')"
say "saved TIFF $w x $h at $x x $y ppi (photo: $source_res ppi)"
[ "$w $h" = "600 400" ] || fail "the TIFF is $w x $h, not 600 x 400"
[ "$x" = "$source_res" ] && [ "$y" = "$source_res" ] || fail "the TIFF's resolution $x x $y is not the photo's $source_res"
convert "$work/out/art.tif" -resize '32x32!' "$work/saved.png"
convert "$samples/coffee.png" -resize '32x32!' "$work/photo.png"
value=$(rmse "$work/saved.png" "$work/photo.png")
say "saved picture against the photo: RMSE $value"
below "$value" 0.06 && fail "the saved picture is the photo, not the line art (RMSE $value)"
shot "$work/now.png"
value=$(rmse "$work/saved.png" "$work/now.png")
say "saved picture against the view: RMSE $value"
below "$value" 0.04 || fail "the saved picture is not what the view shows (RMSE $value)"
press_answered "$work/out/plain" ctrl+s
wait_for 60 "Ctrl+S without an extension" 'test -s "$work/out/plain.png"'
[ -e "$work/out/plain" ] && fail "a file without an extension was written"
[ "$(identify -format '%m %w %h' "$work/out/plain.png")" = "PNG 600 400" ] || fail "plain.png is not a 600 x 400 PNG"
wait_for 30 "the save to end" 'idle'
say "Ctrl+S: art.tif and plain.png"

# 5. Ctrl+Shift+S saves a preset under the typed name.
press ctrl+shift+s
wait_for 10 "the preset name panel" 'test -n "$(where presetNamePanel)"'
xdotool key ctrl+a
xdotool type --delay 40 "Window Test"
xdotool key Return
preset="$HOME/.config/Tornvale Art/EffectPresets/Tornvale/Window Test.pre"
wait_for 20 "the preset file" 'test -s "$preset"'
head -c 4 "$preset" | grep -q VER3 || fail "the preset is not a VER3 file"
say "Ctrl+Shift+S: $(basename "$preset") $(stat -c %s "$preset") bytes"

# 6. Save Project from the File menu (the fifth command: Get Photo, Save Photo, Open Project,
#    Save Project), then quit with Ctrl+Q.
saved_params=$(params)
shot "$work/before-quit.png"
answer "$work/out/project"
focus
menu_pick 20 4
wait_for 60 "Save Project" 'test -s "$work/out/project.qhp"'
wait_for 30 "the project save to end" 'test "$(state fresh)" = 1'
[ "$(state project)" = "$work/out/project.qhp" ] || fail "the document is not the saved project ($(state project))"
say "File > Save Project: $(stat -c %s "$work/out/project.qhp") bytes"
quit

# 7. A new start, Open Project from the File menu: every setting and the picture come back, and
#    no question is asked.
start
sleep 1
answer "$work/out/project.qhp"
# With no photo open the menu's keys skip the disabled "Save Photo...": Open Project is second.
menu_pick 20 2
wait_for 30 "Open Project" 'test "$(state image)" = 600x400'
settled 1
[ "$(state alert)" = none ] || fail "opening the project showed $(state alert)"
[ "$(params)" = "$saved_params" ] || { diff <(echo "$saved_params") <(params); fail "the settings did not come back"; }
shot "$work/reopened.png"
value=$(rmse "$work/reopened.png" "$work/before-quit.png")
say "reopened project against the view before quitting: RMSE $value"
# The reopened render differs from the live one by a few pixels; with the picture shown just
# under 100 % (above the preset strip) that measures 0.010 to 0.011 (0.005 at 107 %). Another
# picture or settings measure 0.1 and more.
below "$value" 0.02 || fail "the reopened picture differs (RMSE $value)"
answer "$samples/chelsea.png"
press ctrl+o
sleep 1.5
[ "$(state alert)" = none ] || fail "an open right after a project open asked a question"
wait_for 30 "Ctrl+O of a second photo" 'test "$(state image)" = 451x300'
settled 1

# 8. After one change, opening asks whether to save; Escape keeps the document.
dice
[ "$(state fresh)" = 0 ] || fail "a change left the document marked as saved"
answer "$samples/coffee.png"
press ctrl+o
wait_for 10 "the unsaved-changes question" 'test "$(state alert)" = saveProjectAlert'
import -window root "$work/question.png"
xdotool key Escape
wait_for 10 "the question to go" 'test "$(state alert)" = none'
sleep 1
[ "$(state image)" = 451x300 ] || fail "Cancel did not keep the open photo"
say "one change: the question appeared; Cancel kept the photo"
quit
say "PASS"
