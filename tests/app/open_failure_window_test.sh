#!/usr/bin/env bash
# A photo named on the command line that cannot be opened is reported, not silently dropped: the
# name "x-ray.png" holds "-r" and is still a name, and since it holds no picture the window shows
# the open-failure alert and the log names the file.
# Usage: open_failure_window_test.sh <tornvale executable>
# Exits 77 (skipped) without a display.
set -uo pipefail
. "$(dirname "$0")/window_test_lib.sh"

app=$(realpath "$1")
if [ -z "${DISPLAY:-}" ]; then
  echo "open_failure_window_test: no DISPLAY, skipped"
  exit 77
fi

work=$(mktemp -d)
export HOME=$work/home
unset XDG_CONFIG_HOME
mkdir -p "$HOME"
export TORNVALE_COMPONENT_MAP=$work/map.txt
pid=""
cleanup() {
  if [ -n "$pid" ] && kill -0 "$pid" 2>/dev/null; then kill "$pid"; wait "$pid" 2>/dev/null; fi
  release_input
  if [ -n "${KEEP_WINDOW_TEST:-}" ]; then echo "open_failure_window_test: files kept in $work"; else rm -rf "$work"; fi
}
trap cleanup EXIT
release_input
fail() {
  echo "open_failure_window_test: FAIL: $*"
  grep '^state' "$work/map.txt" 2>/dev/null
  echo "--- program log"; tail -20 "$work/app.log" 2>/dev/null
  exit 1
}

echo "a shopping list, not a photo" >"$work/x-ray.png"
"$app" "$work/x-ray.png" >>"$work/app.log" 2>&1 &
pid=$!
end=$(( $(date +%s) + 90 ))
until [ "$(state alert 2>/dev/null)" = openFailed ]; do
  [ "$(date +%s)" -ge "$end" ] && fail "no open-failure alert within 90 s"
  sleep 0.3
done
grep -q "Cannot open $work/x-ray.png: not an image" "$work/app.log" || fail "the log does not name the file and the reason"
echo "open_failure_window_test: ok"
