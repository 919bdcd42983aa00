#!/usr/bin/env bash
# Makes the pages of the public headers, Build/docs/index.html. Fails if something public has no documentation, or if
# Doxygen doesn't understand a comment.
set -euo pipefail
cd "$(dirname "$0")/.."

Scripts/Setup.sh --docs

# Public is what a client gets with <Vellum/Vellum.h> and <Describe/Describe.h>: these headers and all that they include.
publicHeaders()
{
    local -a waiting=(Vellum/Vellum.h Describe/Describe.h)
    local -A seen=([Vellum/Vellum.h]=1 [Describe/Describe.h]=1)
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

# Doxygen misses a comment at each member of a group, which has one for all of them, and where there is nothing to say:
# at overrides, at operations that a class takes from its base, and at those that copy or move.
withoutNeedless()
{
    awk '
        function lineOf(file, wanted,    line, number)
        {
            inGroup = 0
            while (number < wanted && (getline line < file) > 0)
            {
                ++number
                if (line ~ /\/\/\/ @[{}]$/)
                    inGroup = line ~ /{$/
            }
            close(file)
            return line
        }
        / is not documented\.$/ && split($0, place, ":") {
            line = lineOf(place[1], place[2])
            if (inGroup || line ~ / override/ || line ~ /^ *using / || / operator=\(/ || /Member [A-Za-z]+\((const )?[A-Za-z]+ &&?[a-z]*\)/)
                next
        }
        { print }
    '
}

version=$(sed -n 's/^project(Vellum VERSION \([0-9.]*\).*/\1/p' CMakeLists.txt)
mapfile -t headers < <(publicHeaders)
rm -rf Build/docs
mkdir -p Build
complaints=$({
    cat Docs/Doxyfile
    echo "PROJECT_NUMBER = $version"
    echo "INPUT = README.md CONTRIBUTING.md CHANGELOG.md" Docs/*.md "${headers[@]}"
} | doxygen - 2>&1 | sort -u | withoutNeedless) # some come twice

if [[ -n $complaints || ! -f Build/docs/index.html ]]; then
    printf '%s\nDocs: the pages have faults.\n' "$complaints" >&2
    exit 1
fi
echo "Docs: Build/docs/index.html"
