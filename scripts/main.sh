#!/usr/bin/env bash
# Installs what is missing, builds, renders the sample photo into line art and prints the
# file's path, then opens the photo in the program. Without a display the program runs under
# Xvfb, a screenshot of its window goes to build/sample-screenshot.png, the program is closed by
# its close button and the screenshot's path is printed too.
set -euo pipefail
cd "$(dirname "$0")/.."
BUILD_DIR=${BUILD_DIR:-build}
app="$BUILD_DIR/bin/tornvale"
sample=samples/coffee.png

if [ "${1:-}" != "--screenshot" ]; then
  bash scripts/install-deps.sh
  bash scripts/build.sh
  "$BUILD_DIR/bin/tornvale-render" --overwrite -o "$BUILD_DIR/sample-lineart.png" "$sample"
  echo "$PWD/$BUILD_DIR/sample-lineart.png"
  if [ -n "${DISPLAY:-}" ]; then
    exec "$app" "$PWD/$sample"
  fi
  exec xvfb-run -a -s "-screen 0 1920x1080x24" bash "$0" --screenshot
fi

# Under Xvfb from here on.
shot="$PWD/$BUILD_DIR/sample-screenshot.png"
# The program reports its controls and render count there; the shot waits for the first render.
export TORNVALE_COMPONENT_MAP=$(mktemp)
"$app" "$PWD/$sample" &
pid=$!
wid=$(timeout 60 xdotool search --sync --onlyvisible --name "Tornvale Art" | head -1)
if [ -z "$wid" ]; then
  echo "main.sh: the window did not appear" >&2
  kill "$pid" 2>/dev/null || true
  exit 1
fi
for _ in $(seq 240); do
  grep -q '^state rendering=0 renders=[1-9]' "$TORNVALE_COMPONENT_MAP" 2>/dev/null && break
  sleep 0.5
done
sleep 0.5 # the paint follows the render's arrival
import -window "$wid" "$shot"
rm -f "$TORNVALE_COMPONENT_MAP"

# A click on the close button at the right end of the title bar, as a user would close it. The
# pointer first moves within the window: a window mapped under a resting pointer sees no motion,
# and a press without one does not reach the button.
eval "$(xdotool getwindowgeometry --shell "$wid")"
xdotool mousemove --sync $(( X + WIDTH / 2 )) $(( Y + HEIGHT / 2 ))
xdotool mousemove --sync $(( X + WIDTH - 16 )) $(( Y + 15 )) click 1
for _ in $(seq 100); do kill -0 "$pid" 2>/dev/null || break; sleep 0.1; done
if kill -0 "$pid" 2>/dev/null; then
  echo "main.sh: the program did not close; stopping it" >&2
  kill "$pid"
fi
wait "$pid" || true
echo "$shot"
