# SPDX-License-Identifier: Apache-2.0
# shellcheck shell=bash
#
# Shared by the consumer tests. The arguments of each test are the repository and a
# working directory; CC, CXX, AR, NM and CMAKE name the tools.
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

# A code block of a document in the given language, the first one by default.
block_of() {
    awk -v fence='```' -v language="$2" -v wanted="${3:-1}" '
        inside && $0 == fence { exit }
        inside { print }
        $0 == fence language && ++count == wanted { inside = 1 }' "$repository/$1"
}
readme_block() { block_of README.md "$1"; }

# Writes the C host that README.md shows into a file.
readme_host() {
    readme_block c > "$work/host.c"
    [ -s "$work/host.c" ] || fail "README.md shows no C host"
}

# Runs a host in an empty directory and compares its output with the one in README.md.
run_readme_host() {
    rm -rf "$work/run"
    mkdir "$work/run"
    (cd "$work/run" && "$1" > ../output.txt)
    readme_block text > "$work/expected.txt"
    [ -s "$work/expected.txt" ] || fail "README.md shows no output"
    diff -u "$work/expected.txt" "$work/output.txt" || fail "the output of $1 differs from README.md"
}

# Compiles every source of the module into the given directory with only the given
# options. It adds no include directory.
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

# Compares the files of an installation with the lines of manifest.txt for the given
# pairs of a component and a linkage.
compare_with_manifest() {
    local prefix=$1 configuration=$2 version
    shift 2
    version=$(sed -nE 's/^#define ALG_DATA_INTERFACE_VERSION_(MAJOR|MINOR|PATCH) ([0-9]+)$/\2/p' \
        "$repository/alg/dataInterface.h" | paste -sd .)
    printf '%s\n' "$@" > "$work/parts.txt"
    awk 'NR == FNR { parts[$0]; next }
        /^#/ || NF == 0 { next }
        $2 == "any" { for (part in parts) if (index(part, $1 " ") == 1) { print $3; next } }
        ($1 " " $2) in parts { print $3 }' \
        "$work/parts.txt" "$repository/tests/consumers/manifest.txt" |
        sed "s/\.VERSION$/.$version/; s/CONFIGURATION/$configuration/" | sort > "$work/expected-files.txt"
    (cd "$prefix" && find . ! -type d | sed 's|^\./||' | sort) > "$work/installed-files.txt"
    diff -u "$work/expected-files.txt" "$work/installed-files.txt" ||
        fail "$prefix differs from tests/consumers/manifest.txt"
}
