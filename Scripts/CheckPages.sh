#!/usr/bin/env bash
# Takes README.md and the pages of Docs at their word: every block of C++ is compiled and run, every block of CMake is
# built with, every recipe for the shell is carried out, as they stand. All in Build/pages; what installs does so there.
#
#   ```cpp            continues YourProgram.cpp, or begins the file that its first line names: // Order.h
#   ```, ```json ...  behind a program or a recipe: what it prints
#   ```cmake          a CMakeLists.txt without its first two lines
#   ```sh             run in the root folder, or beside the page's sources if it names one
#
# A page's programs run in their order, in one folder.
set -euo pipefail
cd "$(dirname "$0")/.."

root=$PWD
pages=$root/Build/pages
export DESTDIR=$pages/root
export PKG_CONFIG_PATH=$DESTDIR/usr/local/lib/pkgconfig
export CMAKE_PREFIX_PATH=$DESTDIR/usr/local
export LD_LIBRARY_PATH=$DESTDIR/usr/local/lib
export PATH=$pages/bin:$DESTDIR/usr/local/bin:$PATH

fail()
{
    echo "CheckPages: $*" >&2
    exit 1
}

# Into a folder for the page: its sources, and Output.N, Project.N and Recipe.N by their place among its blocks.
takeApart() # page folder
{
    rm -rf "$2"
    mkdir -p "$2"
    awk -v folder="$2/" '
        /^```/ && !inBlock {
            inBlock = 1; isFirst = 1; ++count; language = substr($0, 4)
            if (language == "sh") file = sprintf("Recipe.%02d", count)
            else if (language == "cmake") file = sprintf("Project.%02d", count)
            else if (language == "cpp") file = source == "" ? "YourProgram.cpp" : source
            else if (program != "") file = program ".output"
            else file = ""
            next
        }
        /^```/ {
            inBlock = 0
            if (language == "sh") program = file
            else if (language != "cpp") program = ""
            next
        }
        inBlock && language == "cpp" && isFirst {
            if (match($0, /^\/\/ [A-Za-z]+\.(cpp|h)$/)) { file = substr($0, 4); wasNamed[file] = 1 }
            else if (file in isComplete) file = source = "YourProgram" ++programs ".cpp"
            else if (file in hasBegun) print "" > (folder file)
        }
        inBlock {
            isFirst = 0
            if (file == "") next
            hasBegun[file] = 1
            print > (folder file)
            if (language == "cpp" && /^int main\(/) {
                program = file
                isComplete[file] = 1
                print file > (folder "Programs")
            }
        }
    ' "$1"
}

# Lines that .ci/run has anyway aren't run once more.
runRecipe() # file
{
    local folder=$root
    ! grep -q '\.cpp' "$1" || folder=$(dirname "$1")
    grep -vxFf <(sed 's/^ *//' .ci/run) <(sed 's/ *#.*//' "$1") >"$1.sh" || true
    (cd "$folder" && bash -euo pipefail "$1.sh" >"$1.log" 2>&1) || { cat "$1.log" >&2; fail "$1 failed"; }
    [[ ! -f $1.output ]] || diff "$1.output" "$1.log" || fail "$1 prints something else"
}

# Those that no block of CMake builds.
buildPrograms() # folder
{
    local source
    while IFS= read -r source; do
        ! grep -qsF "$source)" "$1"/Project.?? || continue
        (cd "$1" && eval "g++ -std=c++20 -Wall -Wextra -o '${source%.cpp}' '$source' $(pkg-config --cflags --libs vellum)")
        (cd "$1" && "./${source%.cpp}") >"$1/$source.printed" || fail "$source of $1 fails"
        [[ ! -f $1/$source.output ]] || diff "$1/$source.output" "$1/$source.printed" ||
            fail "$source prints something else"
    done < <(cat "$1/Programs" 2>/dev/null)
}

buildProject() # file
{
    local project=$1.project
    mkdir -p "$project"
    ln -s "$root" "$project/Vellum"
    find "$(dirname "$1")" -maxdepth 1 \( -name '*.cpp' -o -name '*.h' \) -exec cp {} "$project" \;
    echo "A text for the program." >"$project/Help.txt"
    {
        echo 'cmake_minimum_required(VERSION 3.23)'
        echo 'project(Page LANGUAGES CXX)'
        grep -q add_executable "$1" || echo 'add_executable(YourProgram YourProgram.cpp)'
        cat "$1"
    } >"$project/CMakeLists.txt"
    {
        cmake -G Ninja -S "$project" -B "$project/Build" && cmake --build "$project/Build"
    } >"$1.log" 2>&1 || { cat "$1.log" >&2; fail "$1 can't be built with"; }
    local program
    for program in $(sed -n 's/^add_executable(\([A-Za-z]*\).*/\1/p' "$project/CMakeLists.txt"); do
        "$project/Build/$program" >/dev/null || fail "$program of $1 fails"
    done
}

rm -rf "$pages"
mkdir -p "$pages/bin"
# The system's own would want to be root.
printf '#!/bin/sh\nexec %s -n "%s/usr/local/lib"\n' "$(PATH=$PATH:/sbin:/usr/sbin command -v ldconfig)" "$DESTDIR" >"$pages/bin/ldconfig"
chmod +x "$pages/bin/ldconfig"

for page in README.md Docs/*.md; do # README.md comes first: its recipe installs what the others use
    folder=$pages/$(basename "$page" .md)
    takeApart "$page" "$folder"
    for recipe in "$folder"/Recipe.??; do [[ ! -f $recipe ]] || runRecipe "$recipe"; done
    buildPrograms "$folder"
    for project in "$folder"/Project.??; do [[ ! -f $project ]] || buildProject "$project"; done
done
diff "$pages/README/YourProgram.cpp" Examples/Readme.cpp || fail "README.md shows another Examples/Readme.cpp"
echo "CheckPages: what the pages say works."
