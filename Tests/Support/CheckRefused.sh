#!/usr/bin/env bash
# Fails unless the compiler refuses exactly those lines of a source that end in "// refused".
#
#   CheckRefused.sh SOURCE COMPILER ARGUMENT...
set -euo pipefail
source=$1
shift

[[ $("$1" --version) == *clang* ]] && set -- "$@" -ferror-limit=0
diff <(grep -n '// refused$' "$source" | cut -d: -f1) \
    <(LC_ALL=C "$@" -fsyntax-only "$source" 2>&1 | sed -n "s|^$source:\([0-9]*\):.*error: .*|\1|p" | sort -nu)
