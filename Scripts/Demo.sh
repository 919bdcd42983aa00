#!/usr/bin/env bash
# Builds the library and its examples for speed, and runs the examples on real input.
set -euo pipefail
cd "$(dirname "$0")/.."

Scripts/Setup.sh
# A folder of its own, so that it leaves the settings of Build/release alone.
cmake --preset release -B Build/demo -DVELLUM_BUILD_TESTS=OFF -DVELLUM_BUILD_BENCHMARKS=OFF
cmake --build Build/demo

for example in Readme Countries MimeTypes Catalog; do
    printf '\n== %s\n\n' "$example"
    "Build/demo/Examples/$example"
done

printf '\n== %s\n\n' TextTool
Build/demo/Examples/TextTool --to Build/demo/Texts Tests/Data/Texts/*.txt
