#!/usr/bin/env bash
# Every command takes every input of the fuzz corpora, whatever its format, to one of its ends: no crash, no fault that a
# sanitizer finds, no hanging.
#
#   Hostile.sh VELLUM CORPORA COMMAND...    a command may have options: "convert --to json"
set -uo pipefail
program=$1 corpora=$2 failures=0
for command in "${@:3}"; do
    for input in "$corpora"/*/*; do
        # shellcheck disable=SC2086
        timeout 60 ${VELLUM_EMULATOR:-} "$program" $command "$input" >/dev/null 2>&1
        status=$?
        ((status <= 2)) || { echo "vellum $command $input: $status"; failures=$((failures + 1)); }
    done
done
exit $((failures != 0))
