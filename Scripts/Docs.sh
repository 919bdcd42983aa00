#!/usr/bin/env bash
# Makes the pages of the public headers, Build/docs/index.html. Fails if something public has no documentation, or if
# Doxygen doesn't understand a comment.
set -euo pipefail
cd "$(dirname "$0")/.."

Scripts/Setup.sh --docs

# Public is what a client gets with <Vellum/Vellum.h>: that header and all that it includes.
publicHeaders()
{
    local -a waiting=(Vellum/Vellum.h)
    local -A seen=([Vellum/Vellum.h]=1)
    local header included
    while ((${#waiting[@]} != 0)); do
        header=${waiting[0]}
        waiting=("${waiting[@]:1}")
        echo "Sources/Core/$header"
        while IFS= read -r included; do
            [[ -n ${seen[$included]:-} ]] || waiting+=("$included")
            seen[$included]=1
        done < <(sed -n 's,^#include "\(\.\./\)\{0\,1\}\(.*\)"$,\2,p' "Sources/Core/$header")
    done
}

version=$(sed -n 's/^project(Vellum VERSION \([0-9.]*\).*/\1/p' CMakeLists.txt)
mapfile -t headers < <(publicHeaders)
rm -rf Build/docs
mkdir -p Build
complaints=$({
    cat Docs/Doxyfile
    echo "PROJECT_NUMBER = $version"
    echo "INPUT = README.md CONTRIBUTING.md CHANGELOG.md" Docs/*.md "${headers[@]}"
} | doxygen - 2>&1 | sort -u) || true # some come twice, and those of Scripts/DocComments.awk don't reach its status

if [[ -n $complaints || ! -f Build/docs/index.html ]]; then
    printf '%s\nDocs: the pages have faults.\n' "$complaints" >&2
    exit 1
fi
echo "Docs: Build/docs/index.html"
