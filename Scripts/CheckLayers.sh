#!/usr/bin/env bash
# Fails if an include points upwards, if a public header includes a private one, or if anything but the sources in
# Platform knows the system that it runs on.
set -euo pipefail
cd "$(dirname "$0")/../Sources/Core"

failures=0
fail()
{
    echo "CheckLayers: $*" >&2
    failures=$((failures + 1))
}

# The name Platform/ is too plain: a client may have such a folder himself, whose headers would come first. Public headers
# therefore include ours beside them, as "../Platform/Export.h".
publicOfPlatform='Platform/(CStringT|Compiler|Export|ModuleHandle)\.h'

# A layer includes itself and what is below it. The private headers of a layer are above its public ones; those of
# Describe use the contract as a client does.
layerOf()
{
    case "$1" in
        Platform/*) echo 0 ;;
        Scribe/*) echo 1 ;;
        Groundwork/*) echo 2 ;;
        Describe/src/*) echo 6 ;;
        Describe/*) echo 4 ;;
        Vellum/src/*) echo 5 ;;
        Vellum/*) echo 3 ;;
        *) echo none ;;
    esac
}

checkOwnInclude()
{
    local file=$1 line=$2 included=$3
    local to
    if [[ $file =~ ^[A-Z][a-z]+/[A-Za-z0-9]+\.h$ && $included =~ ^(\.\./)?$publicOfPlatform$ ]]; then
        [[ $included == ../* || $file == Platform/* ]] || fail "$file:$line: \"$included\" may be a client's; write \"../$included\""
        included=${included#../}
    fi
    to=$(layerOf "$included")
    if [[ $to == none || ! -f $included ]]; then
        fail "$file:$line: \"$included\" is no path from Sources/Core"
    elif ((to > $(layerOf "$file"))); then
        fail "$file:$line: \"$included\" is in a layer above"
    fi
}

checkStandardInclude()
{
    local file=$1 line=$2 included=$3
    [[ $file == Platform/*.cpp ]] && return
    [[ $included =~ ^[a-z_0-9]+$ ]] || fail "$file:$line: <$included> is no header of the standard library"
}

include='^[[:space:]]*#[[:space:]]*include[[:space:]]*'
while IFS=: read -r file line text; do
    if [[ $text =~ $include\"([^\"]+)\" ]]; then
        checkOwnInclude "$file" "$line" "${BASH_REMATCH[1]}"
    elif [[ $text =~ $include\<([^\>]+)\> ]]; then
        checkStandardInclude "$file" "$line" "${BASH_REMATCH[1]}"
    fi
done < <(grep -rnE "$include" --include='*.h' --include='*.cpp' Platform Scribe Groundwork Vellum Describe)

# Only Export.h and Compiler.h have to name systems, since what they say is about the compiler and the linker.
systems='\b(_WIN32|_WIN64|_MSC_VER|__linux__|__unix__|__APPLE__|__GLIBC__)\b'
while IFS= read -r match; do
    fail "$match: names a system"
done < <(grep -rnE "$systems" --include='*.h' --include='*.cpp' Platform Scribe Groundwork Vellum Describe |
    grep -vE '^Platform/((Compiler|Export)\.h|[^:]*\.cpp):' || true)

# Words of one family of compilers, which others don't take. What else is an extension is an error of -Wpedantic.
extensions='\[\[gnu::|__(attribute__|builtin_|int128|asm__|extension__|typeof|PRETTY_FUNCTION__)|# *pragma GCC'
while IFS= read -r match; do
    fail "$match: is for g++ and its like alone"
done < <(cd ../.. && grep -rnE "$extensions" --include='*.h' --include='*.cpp' Sources Tools Examples Fuzz Tests |
    grep -vE '^(Sources/Core/Platform/((Posix|Linux)/|(Compiler|Export)\.h)|Tests/Scribe/CScribeTest\.cpp)' || true)

while IFS= read -r source; do
    fail "$source: sources of this layer are in its folder src"
done < <(find Vellum Describe -maxdepth 1 -name '*.cpp')

((failures == 0)) && echo "CheckLayers: includes only look down."
exit $((failures != 0))
