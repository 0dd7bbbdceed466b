# SPDX-License-Identifier: Apache-2.0
# shellcheck shell=bash
#
# What the consumer tests share. Each is called with the repository and with a
# directory to work in, and finds its tools in CC, CXX, AR, NM and CMAKE.
set -euo pipefail
export LC_ALL=C

repository=$1
work=$2
rm -rf "$work"
mkdir -p "$work"

fail() {
    echo "FAILED: $*" >&2
    exit 1
}

# The first block of README.md that is marked with the given language.
readme_block() {
    awk -v fence='```' -v language="$1" '
        inside && $0 == fence { exit }
        inside { print }
        $0 == fence language { inside = 1 }' "$repository/README.md"
}

# The C host that README.md shows, as a file.
readme_host() {
    readme_block c > "$work/host.c"
    [ -s "$work/host.c" ] || fail "README.md shows no C host"
}

# Runs a host in an empty directory and holds its output against the README's.
run_readme_host() {
    rm -rf "$work/run"
    mkdir "$work/run"
    (cd "$work/run" && "$1" > ../output.txt)
    readme_block text > "$work/expected.txt"
    [ -s "$work/expected.txt" ] || fail "README.md shows no output"
    diff -u "$work/expected.txt" "$work/output.txt" || fail "$1 prints something else than README.md says"
}

# Compiles every source of the module into the given directory with the given
# options and nothing else, not even an include directory.
compile_plainly() {
    local objects=$1 source
    shift
    mkdir -p "$objects"
    (cd "$repository" && find alg -name '*.cpp') > "$work/sources.txt"
    [ -s "$work/sources.txt" ] || fail "no sources under alg/"
    while read -r source; do
        (cd "$repository" && "$CXX" "$@" -std=c++17 -c "$source" -o "$objects/$(basename "$source" .cpp).o")
    done < "$work/sources.txt"
}
