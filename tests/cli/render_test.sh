#!/usr/bin/env bash
# tornvale-render as a user meets it: real photos in, files out, read back by outside tools,
# bad input named with its reason, exit status 0 / 1 / 2.
set -u
render="$1"
samples="$2"
bench="$3"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export HOME="$work/home"
mkdir -p "$HOME"
failures=0
check() { # description, then a command that must succeed
    local what="$1"; shift
    if "$@"; then echo "ok: $what"; else echo "FAIL: $what"; failures=$((failures + 1)); fi
}

cp "$samples/coffee.png" "$samples/chelsea.png" "$work/"

# One photo, the output beside it, at full size.
"$render" "$work/coffee.png" 2>"$work/log1"; status=$?
check "a photo renders with status 0" test "$status" -eq 0
check "the output lies beside the input" test -f "$work/coffee_tornvale.png"
check "one progress line on stderr" grep -q "coffee.png -> .*coffee_tornvale.png" "$work/log1"
check "an outside reader sees a 600 x 400 picture" test "$(identify -format '%w %h' "$work/coffee_tornvale.png")" = "600 400"

# Existing outputs are numbered, or replaced with --overwrite.
"$render" "$work/coffee.png" 2>/dev/null
check "a second run is numbered" test -f "$work/coffee_tornvale (1).png"
"$render" --overwrite "$work/coffee.png" 2>/dev/null
check "--overwrite adds no file" test ! -e "$work/coffee_tornvale (2).png"

# The same random settings give the same picture; a setting changes it.
"$render" --seed 5 -o "$work/a.png" "$work/chelsea.png" 2>/dev/null
"$render" --seed 5 -o "$work/b.png" "$work/chelsea.png" 2>/dev/null
"$render" --seed 5 --set strokeStyle=1 -o "$work/c.png" "$work/chelsea.png" 2>/dev/null
check "--seed repeats exactly" test "$(compare -metric AE "$work/a.png" "$work/b.png" null: 2>&1)" = "0"
check "--set changes the picture" test "$(compare -metric AE "$work/a.png" "$work/c.png" null: 2>&1)" != "0"

# Resolution goes into the output file; TIFF by --format.
convert "$samples/chelsea.png" -units PixelsPerInch -density 300 "$work/dense.jpg"
"$render" --format tif -o "$work/dense_out" "$work/dense.jpg" 2>/dev/null
check "--format tif writes a TIFF" test -f "$work/dense_out.tif"
check "tiffinfo reads 300 dpi" grep -q "Resolution: 300, 300 pixels/inch" <(tiffinfo "$work/dense_out.tif" 2>/dev/null)

# Bad inputs each get one line with the file and the reason; the good one among them is written.
: > "$work/empty.jpg"
head -c 3000 "$work/dense.jpg" > "$work/truncated.jpg"
head -c 4000 /dev/urandom > "$work/noise.png"
echo "not a picture" > "$work/text.tif"
mkdir "$work/out"
"$render" -o "$work/out" "$work/empty.jpg" "$work/truncated.jpg" "$work/noise.png" "$work/text.tif" \
    "$work/missing.png" "$work/chelsea.png" 2>"$work/log2"; status=$?
check "some failed: status 1" test "$status" -eq 1
for f in empty.jpg truncated.jpg noise.png text.tif; do
    check "$f is named as not an image" grep -q "$f: not an image" "$work/log2"
done
check "missing.png cannot be read" grep -q "missing.png: cannot read" "$work/log2"
check "only the good input has an output" test "$(ls "$work/out")" = "chelsea_tornvale.png"

# An unwritable place: a clear line, status 1, no file and no half file.
"$render" -o /proc/out.png "$work/chelsea.png" 2>"$work/log3"; status=$?
check "unwritable output: status 1" test "$status" -eq 1
check "unwritable output is named" grep -q "cannot write" "$work/log3"

# A header that claims 16384 x 16384 between two good photos: refused by name, the others written.
printf '\x89PNG\r\n\x1a\n\0\0\0\x0dIHDR\0\0\x40\0\0\0\x40\0\x08\x06\0\0\0\xa9\xc8\x10\x84' > "$work/huge.png"
mkdir "$work/batch"
"$render" -o "$work/batch" "$work/coffee.png" "$work/huge.png" "$work/chelsea.png" 2>"$work/log4"; status=$?
check "a refused picture in a batch: status 1" test "$status" -eq 1
check "the refused picture is named" grep -q "huge.png: too large: 16384 x 16384" "$work/log4"
check "the pictures around it are written" test "$(ls "$work/batch" | wc -l)" -eq 2

# A real picture under the megapixel limit that this process has no memory for (48 MP under an
# address-space limit of 1.2 GB; the small photos need about 0.7 GB with the renderer loaded).
convert -size 8000x6000 xc:gray50 "$work/roomy.png"
mkdir "$work/oom"
(ulimit -v 1200000; "$render" -o "$work/oom" "$work/coffee.png" "$work/roomy.png" "$work/chelsea.png" 2>"$work/log6"); status=$?
check "out of memory in a batch: status 1" test "$status" -eq 1
check "the picture without memory is named" grep -q "roomy.png: out of memory" "$work/log6"
check "the pictures around it are written" test "$(ls "$work/oom" | wc -l)" -eq 2

# A folder with a file whose name is not UTF-8 (an overlong form, which JUCE's strings overflow
# on): that file is left out with a line, the folder's other picture is written.
mkdir "$work/names" "$work/names-out"
cp "$work/chelsea.png" "$work/names/"
cp "$work/chelsea.png" "$work/names/bad$(printf '\xe0\x9a\x91').png"
"$render" -o "$work/names-out" "$work/names" 2>"$work/log5"; status=$?
check "a name that is not UTF-8 in a folder: status 1" test "$status" -eq 1
check "the folder's name is given with the reason" grep -q "names: not an image: 1 file name(s) that are not UTF-8" "$work/log5"
check "the other picture is written" test "$(ls "$work/names-out")" = "chelsea_tornvale.png"

# Two renders started together to one new name give two files.
"$render" -o "$work/same.png" "$work/coffee.png" 2>/dev/null & first=$!
"$render" -o "$work/same.png" "$work/coffee.png" 2>/dev/null
wait "$first"
check "two renders to one name give two files" test -f "$work/same.png" -a -f "$work/same (1).png"

# Output options that cannot work are usage errors (2) before anything renders or is written.
cp "$work/coffee.png" "$work/own.png"
for args in "--format jpg -o $work/u.png" "-o $work/newdir/" "-o $work/nofolder/u.png" "-o $work/u.bmp" \
            "--overwrite -o $work/own.png"; do
    "$render" $args "$work/own.png" 2>"$work/log5"; status=$?
    check "usage error (2): $args" test "$status" -eq 2 -a ! -s <(ls "$work" | grep -E '^(u\.|u_|newdir|nofolder)')
done
check "the input is never replaced" cmp -s "$work/coffee.png" "$work/own.png"

# Usage.
"$render" --bogus "$work/chelsea.png" 2>/dev/null; status=$?
check "an unknown option is a usage error (2)" test "$status" -eq 2
check "--help fits a screen" test "$("$render" --help | wc -l)" -lt 40
"$render" --list-presets > "$work/presets" 2>/dev/null
check "--list-presets names the built-ins" grep -q "^01 Tornvale" "$work/presets"
check "--list-presets wrote the built-ins" test -n "$(find "$HOME" -name '01 Tornvale.pre')"
"$render" --preset "01 Tornvale" -o "$work/p.png" "$work/chelsea.png" 2>/dev/null
check "a built-in preset by name renders" test -f "$work/p.png"
"$render" --preset "No Such Preset" -o "$work/q.png" "$work/chelsea.png" 2>/dev/null; status=$?
check "an unknown preset fails with status 1" test "$status" -eq 1

# A painted mask of any size, enlarged to the photo: white shows the adjusted photo, black the art.
convert -size 40x30 xc:black -fill white -draw "rectangle 20,0 39,29" "$work/mask.png"
convert -size 8x8 xc:white "$work/white.png"
"$render" --seed 5 --mask "$work/mask.png" -o "$work/m.png" "$work/chelsea.png" 2>/dev/null
"$render" --seed 5 --mask "$work/white.png" -o "$work/w.png" "$work/chelsea.png" 2>/dev/null
quarter() { convert "$1" -crop "112x300+$2+0" +repage "$3"; }
quarter "$work/m.png" 0 "$work/mL.png"; quarter "$work/a.png" 0 "$work/aL.png"
quarter "$work/m.png" 339 "$work/mR.png"; quarter "$work/w.png" 339 "$work/wR.png"
check "--mask: black keeps the art" test "$(compare -metric AE "$work/mL.png" "$work/aL.png" null: 2>&1)" = "0"
check "--mask: white shows the adjusted photo" test "$(compare -metric AE "$work/mR.png" "$work/wR.png" null: 2>&1)" = "0"
check "--mask: the two differ" test "$(compare -metric AE "$work/aL.png" "$(quarter "$work/w.png" 0 "$work/wL.png"; echo "$work/wL.png")" null: 2>&1)" != "0"
"$render" --mask "$work/missing.png" -o "$work/x.png" "$work/chelsea.png" 2>"$work/log4"; status=$?
check "an unreadable mask fails with status 1 and says so" grep -q "cannot read the mask" "$work/log4"

# One look at every size: a photo of 4000 pixels rendered at full size and shrunk to the preview's
# 1500 pixels must look like the preview render of the same photo, as it does in the window.
# Lengths that grow with the picture give RMSE 0.016 here; lengths fixed at those of a 1024-pixel
# picture at both sizes give 0.046 (thin lines at full size, longer ones in the preview). The
# bench's render is the same code: identical bytes.
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
