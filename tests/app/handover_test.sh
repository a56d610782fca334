#!/usr/bin/env bash
# The hand-over files with a host of our own, without a window: every image mode with and without
# a selection in a scripted run (settings recorded by the host), a run with the default settings
# where no display exists, an 8-bit picture compared with the command-line renderer on the same
# picture and settings, and a start with no files, which must end with the missing-file status.
# Usage: handover_test.sh <tornvale> <tornvale-plugin-testhost> <tornvale-render>
set -uo pipefail
app=$(realpath "$1")
host=$(realpath "$2")
render=$(realpath "$3")

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export HOME=$work/home
unset XDG_CONFIG_HOME
mkdir -p "$HOME"
failed=0
check() { # description, command...
  local what=$1; shift
  if "$@" >"$work/out.txt" 2>&1; then
    echo "ok: $what: $(grep testhost: "$work/out.txt" | tail -1)"
  else
    echo "FAIL: $what"; cat "$work/out.txt"; failed=1
  fi
}

settings=(--set strokeLength=0.8 --set contrast=0.6)
for mode in 1 3 10 11; do
  for mask in 0 1; do
    check "scripted, mode $mode, mask $mask" "$host" "$app" "$mode" "$mask" "${settings[@]}"
  done
done
check "no display, default settings, mode 3 with mask" "$host" "$app" 3 1 --headless
check "no files" "$host" "$app" 3 0 --no-files --headless

# One render path: the hand-over result equals tornvale-render on the same picture and settings.
"$host" "$app" 3 0 "${settings[@]}" --write-png "$work/sent.png" >/dev/null 2>&1
"$render" --set strokeLength=0.8 --set contrast=0.6 -o "$work/reference.png" "$work/sent.png" >"$work/render.txt" 2>&1 \
  || { cat "$work/render.txt"; failed=1; }
check "same as the command-line render" "$host" "$app" 3 0 "${settings[@]}" --reference "$work/reference.png"
exit $failed
