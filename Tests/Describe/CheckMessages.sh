#!/usr/bin/env bash
# Fails unless the compiler refuses each case of a source with one error, which has the words of its remark, and names
# the type in no more than sixty lines in all:
#
#   #if CASE == 3 // refused: TYPE: MESSAGE
#
#   CheckMessages.sh SOURCE COMPILER ARGUMENT...
set -euo pipefail
source=$1
shift

cases=$(sed -nE 's|^#if CASE == ([0-9]+) // refused: (.*): (.*)$|\1\t\2\t\3|p' "$source")
[[ -n $cases ]]
while IFS=$'\t' read -r number type message; do
    output=$(LC_ALL=C "$@" -DCASE="$number" -fsyntax-only "$source" 2>&1 || true)
    errors=$(grep -E 'error: ' <<<"$output" || true)
    if [[ $(grep -c . <<<"$errors") != 1 || $errors != *"$message"* || $output != *"$type"* ||
        $(wc -l <<<"$output") -gt 60 ]]; then
        printf 'Case %s isn'"'"'t refused with one "%s" about %s:\n%s\n' "$number" "$message" "$type" "$output"
        exit 1
    fi
done <<<"$cases"
