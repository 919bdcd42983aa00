#!/usr/bin/env bash
# Compiles each header of the library alone, as a program that includes nothing else would.
set -euo pipefail
cd "$(dirname "$0")/../Sources/Core"

find . -name '*.h' -print0 | sort -z |
    xargs -0 -n 1 -P "$(nproc)" "${CXX:-g++}" -std=c++20 -fsyntax-only -Wall -Wextra -Wshadow -Werror -I. -x c++ /dev/null -include
