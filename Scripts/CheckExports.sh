#!/usr/bin/env bash
# Fails if a shared library exports anything but what VELLUM_API marks in the public headers: marked classes with their
# members and type information, and marked functions. Fails too if a marked one isn't there.
#
#   Scripts/CheckExports.sh Build/dev/Sources/Core/libVellum.so HEADERS    HEADERS: the folder that has Vellum/Vellum.h
set -euo pipefail
library=$1
headers=$2

# Qualified names, one a line: a class, or a function with "(" behind it; no template arguments. clang-format sees to it
# that a namespace, its end and a mark begin a line, and that the end says what it is.
marked=$(find "$headers" -name '*.h' -not -path '*/src/*' -not -name Export.h -exec cat {} + | awk '
    /^namespace /       { around[depth++] = scope; scope = scope $2 "::" }
    /^} \/\/ namespace / { scope = around[--depth] }
    /^}$/ && before ~ /^(class|struct) [^{]*;$/ { scope = around[--depth] } # one that only declares has no such end
    { before = $0 }
    /^ *(\[\[noreturn\]\] )?VELLUM_API / { sub(/\(.*/, "("); sub(/.*[ &*]/, ""); print scope $0 }
    /^(extern template )?(class|struct) VELLUM_API / { sub(/.*VELLUM_API /, ""); sub(/[ <;].*/, ""); print scope $0 }
' | sort -u)

# What a symbol is a part of: its name without "vtable for", return type, template arguments and arguments.
listNames()
{
    if [[ $library == *.dll ]]; then # the type information of bases goes along, which the linker can't be kept from
        x86_64-w64-mingw32-objdump -p "$library" | sed -nE '/Ordinal\/Name Pointer/,$ s/^\t\[ *[0-9]+\] (.*[] 0-9a-f] +)?(_Z[A-Za-z0-9_.]+)$/\2/p' | x86_64-w64-mingw32-c++filt | grep -v "^typeinfo "
    else
        nm -D --defined-only -C "$library" | cut -d ' ' -f 3-
    fi
}
exported=$(listNames | sed -E '
    s/^(typeinfo name for|typeinfo for|vtable for|VTT for|construction vtable for|(non-)?virtual thunk to) //
    s/\[abi:cxx11\]//g
    s/\(.*/(/
    :again; s/<[^<>]*>//g; t again' | sort -u)

awk -v library="$library" '
    NR == FNR { marked[$0] = 1; next }
    {
        name = $0
        if (name ~ /^[^(]* Vellum::/ && name !~ /operator/) # an instance of a template has its return type in front
            sub(/^.* /, "", name)
        if (!(name in marked)) # a member of a marked class, or of a class inside it
            while (sub(/::[^:]*$/, "", name) && !(name in marked)) {}
        if (name in marked)
            seen[name] = 1
        else
            fail("exports what is not marked: " $0)
    }
    END {
        for (name in marked)
            if (!(name in seen))
                fail("does not export " name)
        if (length(marked) == 0)
            fail("has no marks to compare with")
        if (!failures)
            print "CheckExports: " library " exports what is marked."
        exit failures != 0
    }
    function fail(text) { print "CheckExports: " library " " text > "/dev/stderr"; ++failures }
' <(printf '%s\n' "$marked") <(printf '%s\n' "$exported")
