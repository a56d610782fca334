#!/usr/bin/env bash
# One look at every size, through tornvale-render itself: a photo of 4000 pixels rendered at full
# size and shrunk to the preview's 1500 pixels must look like the preview render of the same photo,
# as it does in the window. Lengths that grow with the picture give RMSE 0.016 here; lengths fixed
# at those of a 1024-pixel picture at both sizes give 0.046 (thin lines at full size, longer ones
# in the preview). The bench's render is the same code: identical bytes.
set -u
render="$1"
bench="$2"
samples="$3"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export HOME="$work/home"
mkdir -p "$HOME"
failures=0
check() { # description, then a command that must succeed
    local what="$1"; shift
    if "$@"; then echo "ok: $what"; else echo "FAIL: $what"; failures=$((failures + 1)); fi
}

convert "$samples/coffee.png" -filter Lanczos -resize 4000x "$work/big.png"
settings=(--set strokeLength=0.6 --set smoothing=0.5 --set postSharpen=0.5)
"$render" "${settings[@]}" -o "$work/full.png" "$work/big.png" 2>/dev/null
"$render" "${settings[@]}" --size preview -o "$work/preview.png" "$work/big.png" 2>/dev/null
check "full size is 4000 x 2667" test "$(identify -format '%w %h' "$work/full.png")" = "4000 2667"
check "the preview is 1500 x 1000" test "$(identify -format '%w %h' "$work/preview.png")" = "1500 1000"
convert "$work/full.png" -filter Triangle -resize 1500x1000! "$work/shrunk.png"
rmse=$(compare -metric RMSE "$work/shrunk.png" "$work/preview.png" null: 2>&1 | sed -n 's/.*(\(.*\)).*/\1/p')
echo "full size shrunk against the preview: RMSE $rmse"
# Resampling and the direction field's grid account for what is left; 0.03 lies between the two.
check "full size shrunk looks like the preview" awk -v r="$rmse" 'BEGIN { exit !(r != "" && r < 0.03) }'

# The bench renders through the same code: the same photo gives the same bytes.
"$render" -o "$work/cli.png" "$samples/coffee.png" 2>/dev/null
"$bench" --render "$samples/coffee.png" 600 400 0 "$work/bench.png" >/dev/null
check "the bench's render equals tornvale-render's" test "$(compare -metric AE "$work/cli.png" "$work/bench.png" null: 2>&1)" = "0"

echo "$failures failed"
[ "$failures" -eq 0 ]
