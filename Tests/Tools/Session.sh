#!/usr/bin/env bash
# Runs the commands of a session, which are its lines that begin with "$ ", and compares what they print and how they end
# with what stands there: [1] is the exit status 1. They run in the folder of the fuzz corpora, with the program as
# `vellum`; VELLUM_EMULATOR starts it where that is set.
#
#   Session.sh VELLUM CORPORA SESSION             compares
#   Session.sh VELLUM CORPORA SESSION --update    writes the session anew
set -uo pipefail
program=$1 corpora=$2 session=$(realpath "$3")
vellum() { ${VELLUM_EMULATOR:-} "$program" "$@"; }

cd "$corpora" || exit
happened=$(grep '^\$ ' "$session" | while IFS= read -r line; do
    printf '%s\n' "$line"
    eval "${line#\$ }" 2>&1 </dev/null
    status=$?
    ((status == 0)) || echo "[$status]"
done)
if [[ ${4:-} == --update ]]; then
    printf '%s\n' "$happened" >"$session"
else
    diff "$session" <(printf '%s\n' "$happened")
fi
