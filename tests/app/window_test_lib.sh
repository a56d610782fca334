# Shared by the window tests (sourced): reading the program's component map, comparing pictures,
# and sending input the way a user does. The caller sets $work (its folder, where the program
# writes map.txt) and, once the window is up, $wid; it defines fail.

# Each window test gets an X server of its own. Tests of one run that share a screen see each
# other's windows, pointer and focus: a window of another test that maps over the drop target,
# or a button it left down, turns one test's click or drag into another's. Xvfb picks a free
# display itself and names it once it accepts clients; the server ends with the test.
if [ -z "${WINDOW_TEST_SHARED_X:-}" ] && command -v Xvfb >/dev/null; then
  _xfile=$(mktemp)
  Xvfb -displayfd 3 -screen 0 1920x1080x24 -nolisten tcp -noreset 3>"$_xfile" >/dev/null 2>&1 &
  _xpid=$!
  for _ in $(seq 100); do [ -s "$_xfile" ] && break; sleep 0.1; done
  if [ -s "$_xfile" ]; then
    export DISPLAY=":$(cat "$_xfile")"
    _owner=$$
    ( while kill -0 "$_owner" 2>/dev/null; do sleep 1; done; kill "$_xpid" 2>/dev/null ) >/dev/null 2>&1 &
  else
    kill "$_xpid" 2>/dev/null
  fi
  rm -f "$_xfile"
fi

rmse() { compare -metric RMSE "$1" "$2" null: 2>&1 | sed -n 's/.*(\(.*\)).*/\1/p'; }
below() { awk -v a="$1" -v b="$2" 'BEGIN { exit !(a < b) }'; }

# One control's line of the map: name x y w h.
where() { awk -v n="$1" '$1 == n { print; exit }' "$work/map.txt"; }
centre_of() { # name -> "x y"
  local line; line=$(where "$1"); [ -n "$line" ] || fail "no control named $1 on screen"
  echo "$line" | awk '{ printf "%d %d\n", $2 + $4 / 2, $3 + $5 / 2 }'
}
param() { awk -F'[ =]' -v k="$1" '$1 == "param" && $2 == k { print $3; exit }' "$work/map.txt"; }
params() { grep '^param' "$work/map.txt" | sort; }
state() { awk -v k="$1" '$1 == "state" { for (i = 2; i <= NF; i++) { split($i, p, "="); if (p[1] == k) print p[2] } }' "$work/map.txt"; }
# The map is written twice a second, later still on a busy machine: a state that a click brings
# is waited for, not expected after a fixed pause.
wait_state() { # key value [seconds]
  local i
  for i in $(seq $(( ${3:-20} * 5 ))); do [ "$(state "$1")" = "$2" ] && return 0; sleep 0.2; done
  return 1
}
# A state that animates (zoom) is read once it differs from what it was and holds still.
settled_state() { # key old-value
  local i now last=""
  for i in $(seq 60); do
    sleep 0.5
    now=$(state "$1")
    [ "$now" != "$2" ] && [ "$now" = "$last" ] && break
    last=$now
  done
  echo "$now"
}
# Waits (up to a minute) until the window shows a picture of that size, rendered at least once and
# not rendering now; true when it does.
wait_for_picture() { # WxH
  for _ in $(seq 1 200); do
    [ -f "$work/map.txt" ] && [ "$(state image)" = "$1" ] && [ "$(state rendering)" = "0" ] && [ "$(state renders)" != "0" ] && return 0
    sleep 0.3
  done
  return 1
}

focus() { xdotool windowfocus --sync "$wid" 2>/dev/null || xdotool windowfocus "$wid"; sleep 0.2; }
# A shortcut as a user types it: into the program's window, with the focus there. Without a
# window manager nothing gives the focus back once a panel or a menu took it, and a key sent to
# the screen's root while the pointer is outside the window reaches nobody.
press() { focus; xdotool key "$@"; }
# Points at a control the way a hand does: arriving from beside it, so the window sees motion
# inside before the press.
point_at() { # name
  local c; c=$(centre_of "$1")
  set -- $c
  xdotool mousemove --sync $(( $1 - 6 )) $(( $2 - 3 ))
  xdotool mousemove --sync "$1" "$2"
}
# The program counts the presses it receives (the map's "presses"). A press is lost only when the
# program wrote its map four times since the click without counting it: a program busy on its
# message thread writes no map either, and takes the press when it gets there. A lost press is
# sent once more, with a line that says so; one it received and ignored is left for the caller's
# check to find, and the map then names the control it reached.
click() { point_at "$1"; pressed_or_again "$1" point_at "$1"; }
# The same at a point of the screen: "X Y".
click_at() { set -- $1; xdotool mousemove --sync $(( $1 - 6 )) $(( $2 - 3 )); xdotool mousemove --sync "$1" "$2"; pressed_or_again "$1,$2" xdotool mousemove --sync "$1" "$2"; }
pressed_or_again() { # label command-that-points-again...
  local label=$1; shift
  local before; before=$(state presses 2>/dev/null)
  xdotool click 1
  [ -n "$before" ] || return 0
  unchanged_over_map_writes 4 180 "[ \"\$(state presses)\" = '$before' ]"
  [ $? = 1 ] || return 0
  echo "${test_name:-window test}: the press on $label never reached the program; pressing again" >&2
  xdotool mouseup 1 >/dev/null 2>&1 || true
  "$@"; xdotool click 1
}

# Waits while a condition (a string, evaluated afresh) holds: true once it no longer does, 1 once
# the program has written its map N times with it still holding, 2 after LIMIT seconds. A
# program busy on its message thread writes no map, so a slow program is waited for, and only one
# that goes on answering without acting counts as having missed an input.
unchanged_over_map_writes() { # N limit-seconds condition...
  local n=$1 limit=$2; shift 2
  local writes=0 last now end=$(( $(date +%s) + limit ))
  last=$(stat -c %.9Y "$work/map.txt" 2>/dev/null)
  while eval "$*" 2>/dev/null; do
    now=$(stat -c %.9Y "$work/map.txt" 2>/dev/null)
    [ "$now" != "$last" ] && { writes=$((writes + 1)); last=$now; }
    [ $writes -ge "$n" ] && return 1
    [ "$(date +%s)" -ge "$end" ] && return 2
    sleep 0.2
  done
}

# A shortcut that opens a file dialog answered through TORNVALE_CHOOSER_FILE: the program takes
# the answer the moment the dialog would open. Under load a key now and then never reaches the
# program: the answer then stays unread while the program writes its map four times, and the key
# is sent once more, with a line that says so.
press_answered() { # answer-path keys...
  echo "$1" >"$TORNVALE_CHOOSER_FILE"; shift
  press "$@"
  unchanged_over_map_writes 4 180 '[ -f "$TORNVALE_CHOOSER_FILE" ]'
  case $? in
    1) echo "${test_name:-window test}: the key $* never reached the program; pressing again" >&2
       press "$@" ;;
    2) echo "${test_name:-window test}: the answer to $* stayed unread for 180 s" >&2 ;;
  esac
}

# True once the menu has closed; false when the program wrote its map six times with it open.
menu_closed() { unchanged_over_map_writes 6 120 '[ "$(state menu)" != 0 ]'; }
# Opens a menu of the menu bar by a click and picks an item with the given keys. Keys reach the
# menu only once it is open (the map's menu=1): sent earlier they go to the window. A menu that
# stays open after its keys lost them: it is closed with Esc and opened again, with a line.
menu_keys() { # menu-x-offset keys...
  local line; line=$(where menuBar); [ -n "$line" ] || fail "no menu bar"
  read -r _ mx my mw mh <<<"$line"
  local shift_x=$1 attempt; shift
  for attempt in 1 2 3; do
    focus
    xdotool mousemove --sync $(( mx + shift_x )) $(( my + mh / 2 ))
    xdotool click 1
    if wait_state menu 1 20; then
      for key in "$@"; do xdotool key "$key"; sleep 0.1; done
      menu_closed && { wait_state modal 0 60 || fail "a window stayed modal after the menu"; return 0; }
      echo "${test_name:-window test}: the menu kept its keys; closing it and trying again" >&2
      xdotool key Escape
      wait_state menu 0 10 || fail "the menu did not close"
    else
      echo "${test_name:-window test}: no menu opened; clicking again" >&2
    fi
  done
  fail "the menu did not take its keys in three tries"
}

# What a failing test prints about the program: its state line, how old the map is, where the X
# focus sits and, when the program still runs, where each of its threads waits.
report_program() {
  grep '^state' "$work/map.txt" 2>/dev/null
  [ -f "$work/map.txt" ] && echo "--- map written $(( $(date +%s) - $(stat -c %Y "$work/map.txt") )) s ago"
  echo "--- X: focus on $(xdotool getwindowfocus 2>/dev/null) (the program's window: ${wid:-none})"
  echo "--- program log"; tail -20 "$work/app.log" 2>/dev/null
  if [ -n "${pid:-}" ] && kill -0 "$pid" 2>/dev/null && command -v gdb >/dev/null; then
    echo "--- threads"
    timeout 60 gdb -p "$pid" -batch -ex "thread apply all bt 12" 2>/dev/null | grep '^#\|^Thread' | head -120
  fi
}

# A test that ended between a press and its release (killed mid-drag) leaves that button or key
# down, and the server then drops the next press of it. Tests start, and end, with every button
# and modifier up and the pointer in the corner; this matters where tests share a screen (a run
# with WINDOW_TEST_SHARED_X set, or a display of the developer's own).
release_input() {
  xdotool mouseup 1 mouseup 2 mouseup 3 keyup ctrl keyup shift keyup alt >/dev/null 2>&1
  xdotool mousemove --sync 1 1 >/dev/null 2>&1 || true
}

# Waits until a condition holds; the condition is a string, evaluated afresh each time.
wait_for() { # seconds label command...
  local limit=$1 label=$2; shift 2
  local end=$(( $(date +%s) + limit ))
  until eval "$*" 2>/dev/null; do
    [ "$(date +%s)" -ge "$end" ] && fail "$label: not within $limit s"
    sleep 0.3
  done
}
# No render and no job runs: the program takes clicks on presets and keys for the history.
idle() { [ -f "$work/map.txt" ] && [ "$(state rendering)" = 0 ] && [ "$(state busy)" = 0 ]; }

# The start a window test shares: skipped (77) without a display, the tools checked, a fresh home
# folder under $work with the component map beside it, and an exit that ends the program ($pid),
# lets every button up and removes $work unless KEEP_WINDOW_TEST is set.
window_test_start() { # name tools...
  test_name=$1; shift
  if [ -z "${DISPLAY:-}" ]; then echo "$test_name: no DISPLAY, skipped"; exit 77; fi
  local tool
  for tool in "$@"; do command -v "$tool" >/dev/null || { echo "$test_name: $tool missing"; exit 1; }; done
  work=$(mktemp -d)
  export HOME=$work/home TORNVALE_COMPONENT_MAP=$work/map.txt
  unset XDG_CONFIG_HOME
  mkdir -p "$HOME"
  pid=""
  trap window_test_end EXIT
  release_input
}
window_test_end() {
  if [ -n "${pid:-}" ] && kill -0 "$pid" 2>/dev/null; then kill "$pid"; fi
  release_input
  if [ -n "${KEEP_WINDOW_TEST:-}" ]; then echo "$test_name: files kept in $work"; else rm -rf "$work"; fi
}
