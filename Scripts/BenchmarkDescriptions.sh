#!/usr/bin/env bash
# What descriptions cost, as ratios within one run:
#
#   - the time to compile a client of ten classes: described, beside written by hand, and beside cereal's
#   - the time to write and to read objects of such classes, described beside written by hand, in each format
#
#   Scripts/BenchmarkDescriptions.sh [ROUNDS]     5 if it isn't given; of each time the least counts
set -euo pipefail
cd "$(dirname "$0")/.."

rounds=${1:-5}
Scripts/Setup.sh --benchmarks --check
clients=Benchmarks/Descriptions

compileTime() # client compiler options...
{
    local TIMEFORMAT=%U
    { time "${@:2}" -std=c++20 -ISources/Core -c -o /dev/null "$clients/$1Client.cpp"; } 2>&1
}

leastOf() { printf '%s\n' "$@" | sort -g | head -n 1; }

ratio() { awk "BEGIN { printf \"%.2f\", $1 / $2 }"; }

echo "Seconds to compile a client of ten classes, and the described one's by the others'"
printf '%-14s %12s %12s %12s %18s %14s\n' "" described "by hand" cereal "described/by hand" "described/cereal"
for compiler in "g++ -O0" "g++ -O2" "clang++ -O0" "clang++ -O2"; do
    described=() handwritten=() cereal=()
    for ((round = 0; round < rounds; ++round)); do # in turn, so that all meet the same machine
        described+=("$(compileTime Described $compiler)")
        handwritten+=("$(compileTime Handwritten $compiler)")
        cereal+=("$(compileTime Cereal $compiler)")
    done
    d=$(leastOf "${described[@]}") h=$(leastOf "${handwritten[@]}") c=$(leastOf "${cereal[@]}")
    printf '%-14s %12s %12s %12s %18s %14s\n' "$compiler" "$d" "$h" "$c" "$(ratio "$d" "$h")" "$(ratio "$d" "$c")"
done

cmake --preset release -DVELLUM_BUILD_TESTS=OFF -DVELLUM_BUILD_EXAMPLES=OFF -DVELLUM_BUILD_TOOLS=OFF >/dev/null
cmake --build --preset release --target DescriptionBenchmarks >/dev/null
printf '\nMicroseconds to write and to read, and the ratio\n'
printf '%-22s %12s %12s %18s\n' "" described "by hand" "described/by hand"
Build/release/Benchmarks/DescriptionBenchmarks --benchmark_format=csv --benchmark_min_time=0.1 \
    --benchmark_repetitions="$rounds" --benchmark_enable_random_interleaving=true 2>/dev/null |
    awk -F, '
        { gsub(/"/, "") }
        $1 !~ /\/(Handwritten|Described)$/ { next }
        {
            lane = way = $1; sub(/\/[^\/]*$/, "", lane); sub(/.*\//, "", way)
            if (!(lane in seen)) { seen[lane] = 1; lanes[++count] = lane }
            if (!((lane, way) in least) || $4 + 0 < least[lane, way]) least[lane, way] = $4 + 0 # processor time
        }
        END {
            for (i = 1; i <= count; ++i) {
                d = least[lanes[i], "Described"]; h = least[lanes[i], "Handwritten"]
                printf "%-22s %12.1f %12.1f %18.2f\n", lanes[i], d / 1000, h / 1000, d / h
            }
        }' |
    sort
