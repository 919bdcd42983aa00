#!/usr/bin/env bash
# Builds everything and runs all tests. --sanitize runs them under AddressSanitizer and UndefinedBehaviorSanitizer too.
set -euo pipefail
cd "$(dirname "$0")/.."

presets=(dev)
for option in "$@"; do
    case "$option" in
        --sanitize) presets+=(asan) ;;
        *) echo "Test: unknown option $option (known: --sanitize)" >&2; exit 2 ;;
    esac
done

Scripts/Setup.sh
for preset in "${presets[@]}"; do
    cmake --preset "$preset"
    cmake --build --preset "$preset"
    ctest --preset "$preset" -j "$(nproc)"
done
