#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# A C++ host may define functions with the names and signatures of the module's private
# functions. It links, and the module still calls its own functions.
. "$(dirname "$0")/common.sh"

# Without optimisation, every private function has a symbol, also the inline ones.
compile_plainly "$work/objects" -O0
"$NM" --demangle --defined-only "$work"/objects/*.o |
    sed -nE 's/^[0-9a-f]+ [TtW] alg_internal::([A-Za-z0-9_]+\([^<]*\))$/\1/p' |
    sed 's/alg_internal:://g' | sort -u > "$work/signatures.txt"
[ "$(wc -l < "$work/signatures.txt")" -ge 60 ] ||
    fail "found only $(wc -l < "$work/signatures.txt") private functions"

# The host's twins: types of the same names, and functions that abort when they are called.
{
    echo '#include <stdlib.h>'
    echo '#include "dataInterface.h"'
    sed -nE 's/.*namespace.*//
        s/^(struct|enum|union) ([A-Za-z0-9_]+)( : [a-z0-9_]+)? \{$/struct \2 { void* own; };/p' \
        "$repository"/alg/dataInterface/*/*.h "$repository"/alg/dataInterface/*/*.cpp | sort -u
    sed -E 's/^/int /; s/$/ { abort(); }/' "$work/signatures.txt"
} > "$work/twins.cpp"
grep -q '^int countLines(File) ' "$work/twins.cpp" || fail "countLines() is not among the private functions"
grep -q '^int valueOf(unsigned char) ' "$work/twins.cpp" ||
    fail "valueOf() is not among the private functions"

"$CXX" -std=c++17 "-I$repository/alg" -c "$work/twins.cpp" -o "$work/twins.o"
"$CXX" -std=c++17 "-I$repository/alg" -c "$(dirname "$0")/same-names-host.cpp" -o "$work/host.o"
"$AR" rcs "$work/module.a" "$work"/objects/*.o
"$CXX" "$work/host.o" "$work/twins.o" "$work/module.a" -o "$work/host"
cd "$work"
./host
