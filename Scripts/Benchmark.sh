#!/usr/bin/env bash
# Measures Vellum beside its peers and writes Docs/Performance.md with its charts.
#
#   Scripts/Benchmark.sh          five rounds, about a minute each
#   Scripts/Benchmark.sh 2 0.01   two rounds, a hundredth of a second for each benchmark
#
# A round runs every benchmark of every peer, so that what changes on the machine meanwhile hits all of them. The
# program is bound to one processor. What it has found is left in Build/release/Rounds.
set -euo pipefail
cd "$(dirname "$0")/.."

rounds=${1:-5}
seconds=${2:-0.05}

Scripts/Setup.sh --benchmarks
cmake --preset release >/dev/null
cmake --build --preset release --target VellumBenchmarks

folder=Build/release/Rounds
rm -rf "$folder"
mkdir -p "$folder"
processor=$(taskset -cp $$ | sed 's/.*[^0-9]//') # the last one that this script may use

measure()
{
    local name=$1
    shift
    printf 'Benchmark: %s (after %d s)\n' "$name" "$SECONDS"
    taskset -c "$processor" Build/release/Benchmarks/VellumBenchmarks --benchmark_min_time="$seconds" \
        --benchmark_out="$folder/$name.json" --benchmark_out_format=json "$@" >"$folder/$name.txt" 2>&1 ||
        { cat "$folder/$name.txt" >&2; exit 1; }
}

for ((round = 1; round <= rounds; ++round)); do
    measure "Round$round"
done
measure Cold --cold --benchmark_filter=/100000/

PYTHONDONTWRITEBYTECODE=1 python3 Benchmarks/Report/MakePage.py Docs "$folder/Cold.json" "$folder"/Round*.json
echo "Benchmark: Docs/Performance.md is written."
