#!/usr/bin/env bash
# Fails unless the compiler refuses those lines of a source that end in "// refused: N", each N times, and no others.
#
#   CheckRefused.sh SOURCE COMPILER ARGUMENT...
set -euo pipefail
source=$1
shift

[[ $("$1" --version) == *clang* ]] && set -- "$@" -ferror-limit=0
diff <(sed -nE 's|.*// refused: ([0-9]+)$|\1|;T;=;p' "$source" | paste - -) \
    <(LC_ALL=C "$@" -fsyntax-only "$source" 2>&1 | sed -n "s|^$source:\([0-9]*\):.*error: .*|\1|p" | sort -n |
        uniq -c | awk '{ print $2 "\t" $1 }')
