#!/usr/bin/env bash
# The interactive hand-over: a host of our own starts the program on a 16-bit picture with a
# selection; the window opens on it with "Apply to Photo" in place of the save button; Ctrl+S
# renders, writes the result back and ends the program, and the host finds its unselected pixels
# unchanged. A second run is quit with Ctrl+Q and answered "Quit": the host's
# picture stays as it was. With no files at all the program ends with the missing-file status.
# Usage: handover_window_test.sh <tornvale> <tornvale-plugin-testhost>
set -uo pipefail
. "$(dirname "$0")/window_test_lib.sh"
app=$(realpath "$1")
host=$(realpath "$2")
if [ -z "${DISPLAY:-}" ]; then echo "handover_window_test: no DISPLAY, skipped"; exit 77; fi
command -v xdotool >/dev/null || { echo "handover_window_test: xdotool missing"; exit 1; }

work=$(mktemp -d)
export HOME=$work/home
unset XDG_CONFIG_HOME
mkdir -p "$HOME"
export TORNVALE_COMPONENT_MAP=$work/map.txt
hostpid=""
cleanup() {
  if [ -n "$hostpid" ] && kill -0 "$hostpid" 2>/dev/null; then
    for child in $(pgrep -P "$hostpid"); do kill "$child"; done
    kill "$hostpid"
  fi
  release_input
  rm -rf "$work"
}
trap cleanup EXIT
release_input
fail() {
  echo "handover_window_test: FAIL: $*"
  echo "--- host"; cat "$work/host.txt" 2>/dev/null
  grep '^state\|Button' "$work/map.txt" 2>/dev/null | head -20
  exit 1
}

# Starts the host, waits for the window showing the picture; sets wid and hostpid.
start() { # testhost arguments...
  rm -f "$work/map.txt"
  "$host" "$app" "$@" >"$work/host.txt" 2>&1 &
  hostpid=$!
  wait_for_picture 120x80 || fail "the window did not open on the host's picture"
  wid=$(timeout 30 xdotool search --sync --onlyvisible --pid "$(pgrep -P "$hostpid" | head -1)" | head -1)
  [ -n "$wid" ] || fail "no window"
  [ -n "$(where savePhotoButton)" ] || fail "no Apply to Photo button"
  [ -z "$(where getPhotoButton)" ] || fail "the open button shows in a host"
  grep -q '^command 8193 1 0 Apply_to_Photo...$' "$work/map.txt" || fail "the menu does not say Apply to Photo..."
}
finish() { # expected description
  for _ in $(seq 1 200); do kill -0 "$hostpid" 2>/dev/null || break; sleep 0.3; done
  wait "$hostpid" || fail "$1"
  hostpid=""
  echo "ok: $1: $(tail -1 "$work/host.txt")"
}

start 11 1
press ctrl+s
finish "Ctrl+S applied a 16-bit picture with a selection"

start 3 0 --quit
# Quit, as the menu and the window's close button ask for it, asks first.
press ctrl+q
wait_state alert pluginQuitAlert 15 || fail "Ctrl+Q did not ask Quit or Apply"
click pluginQuitAlertQuitButton
finish "Quit left the host's picture as it was"

# With a display but no files, the program ends before any window with the missing-file status.
"$host" "$app" 3 0 --no-files >"$work/host.txt" 2>&1 || fail "a start with no files did not end with 174"
echo "ok: $(tail -1 "$work/host.txt")"
