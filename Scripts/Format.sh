#!/usr/bin/env bash
# Formats all sources. --check changes nothing and fails if a file isn't formatted.
set -euo pipefail
cd "$(dirname "$0")/.."

arguments=(-i)
[[ ${1:-} == --check ]] && arguments=(--dry-run -Werror)

# Another version formats differently.
for clangFormat in clang-format-14 clang-format ''; do
    command -v "$clangFormat" >/dev/null && "$clangFormat" --version | grep -q 'version 14\.' && break
done
[[ -n $clangFormat ]] || { echo "Format: clang-format 14 is needed: Scripts/Setup.sh --check installs it" >&2; exit 1; }

folders=()
for folder in Sources Tests Fuzz Examples Benchmarks Tools; do
    [[ -d $folder ]] && folders+=("$folder")
done
find "${folders[@]}" \( -name '*.h' -o -name '*.cpp' \) -print0 |
    xargs -0 -n 16 -P "$(nproc)" "$clangFormat" --style=file "${arguments[@]}"
