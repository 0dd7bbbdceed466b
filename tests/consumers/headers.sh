#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# Each public header compiles alone, as C11 and as C++17, without a warning.
. "$(dirname "$0")/common.sh"

strict=(-Wall -Wextra -Wpedantic -Werror -fsyntax-only "-I$repository/alg")
for header in dataInterface.h algDataInterfaceStruct.h algDefines.h capacities.h ai_macros.h; do
    # Included twice, to test the include guard.
    printf '#include "%s"\n#include "%s"\ntypedef int alone;\n' "$header" "$header" > "$work/alone.c"
    cp "$work/alone.c" "$work/alone.cpp"
    "$CC" -std=c11 "${strict[@]}" "$work/alone.c" || fail "$header as C11"
    "$CXX" -std=c++17 "${strict[@]}" "$work/alone.cpp" || fail "$header as C++17"
    echo "$header: C11, C++17"
done
