#!/usr/bin/env bash
# Runs every fuzz target in turn, each for SECONDS (default 600), at the lowest priority and with
# the allocation limit that a reader must stay under: no single allocation and no total above
# 256 MB. A finding is written to build-fuzz/findings/<target>/.
#   bash fuzz/run.sh [SECONDS] [TARGET...]
set -u
cd "$(dirname "$0")/.."
seconds=${1:-600}; shift || true
targets=("$@")
[ ${#targets[@]} -eq 0 ] && targets=(fuzz_image_reader fuzz_project_reader fuzz_propertyset_binary fuzz_propertyset_xml fuzz_preset_reader fuzz_handover_reader fuzz_color_palette)
status=0
for target in "${targets[@]}"; do
    binary=build-fuzz/bin/$target
    [ -x "$binary" ] || binary=build-fuzz/fuzz/$target
    corpus=build-fuzz/corpus/$target findings=build-fuzz/findings/$target
    mkdir -p "$corpus" "$findings"
    nice -n 19 "$binary" "$corpus" -max_total_time="$seconds" -malloc_limit_mb=256 -rss_limit_mb=2048 \
        -artifact_prefix="$findings/" -print_final_stats=1 2>&1 | grep -E "^(stat::|Done|==.*ERROR|SUMMARY)" | sed "s/^/$target: /"
    [ "${PIPESTATUS[0]}" -eq 0 ] || status=1
done
exit $status
