#!/usr/bin/env bash
# Searches for inputs that break a fuzz target, under AddressSanitizer and UndefinedBehaviorSanitizer.
#
#   Scripts/Fuzz.sh FuzzBinary 900    for 900 seconds (default 60); further arguments go to libFuzzer as they are
#
# Starts from the seeds in Fuzz/Corpus and from what earlier searches found, which is kept in Build/fuzz/Corpus. An
# input that fails is put into Fuzz/Corpus, where the tests replay it from then on.
set -euo pipefail
cd "$(dirname "$0")/.."

if (($# == 0)); then
    echo "Usage: Scripts/Fuzz.sh TARGET [SECONDS [libFuzzer arguments]]; the targets are:" >&2
    sed -n 's/^vellum_fuzz(\([A-Za-z0-9]*\).*/    \1/p' Fuzz/CMakeLists.txt >&2
    exit 2
fi
target=$1
seconds=${2:-60}
shift $(($# < 2 ? $# : 2))

Scripts/Setup.sh --check
cmake --preset fuzz >/dev/null
cmake --build --preset fuzz --target "$target"

seeds="Fuzz/Corpus/${target#Fuzz}"
found="Build/fuzz/Corpus/${target#Fuzz}"
mkdir -p "$found"
"Build/fuzz/Fuzz/$target" -max_total_time="$seconds" -timeout=10 -rss_limit_mb=1024 -artifact_prefix="$seeds/" \
    -print_final_stats=1 "$@" "$found" "$seeds"
