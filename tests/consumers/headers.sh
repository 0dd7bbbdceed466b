#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# Each public header compiles alone, in C from C99 and in C++ from C++11 on, without a
# warning, also inside extern "C". All of them compile in any order.
. "$(dirname "$0")/common.sh"

headers='dataInterface.h algDataInterfaceStruct.h algDefines.h capacities.h ai_macros.h'
strict=(-Wall -Wextra -pedantic -Werror -fsyntax-only "-I$repository/alg")
c_standards='c99 c11 c17 c2x gnu99'
cxx_standards='c++11 c++14 c++17 c++20'

# Every order of the words. The name of a file is made from the initials of its headers.
orders() {
    local before=$1 word
    shift
    [ $# -gt 0 ] || echo "$before"
    for word in "$@"; do
        # shellcheck disable=SC2046 # the other words
        orders "$before $word" $(printf '%s\n' "$@" | grep -vxF "$word")
    done
}

mkdir "$work/alone" "$work/orders"
for header in $headers; do
    # Included twice, to test the include guard.
    printf '#include "%s"\n#include "%s"\ntypedef int alone;\n' "$header" "$header" > "$work/alone/$header.c"
    cp "$work/alone/$header.c" "$work/alone/$header.cpp"
    printf 'extern "C" {\n#include "%s"\n}\n' "$header" > "$work/alone/$header-linkage.cpp"
done
# shellcheck disable=SC2086 # one word per header
orders '' $headers > "$work/orders.txt"
[ "$(sort -u "$work/orders.txt" | wc -l)" -eq 120 ] || fail "there are not 120 orders of 5 headers"
while read -r order; do
    # shellcheck disable=SC2086 # one word per header
    printf '#include "%s"\n' $order > "$work/orders/${order//[^a-zA-Z]/}.c"
done < "$work/orders.txt"
for file in "$work"/orders/*.c; do
    cp "$file" "${file}pp"
done

for standard in $c_standards; do
    "$CC" "-std=$standard" "${strict[@]}" -Wundef "$work"/alone/*.c || fail "alone, as $standard"
done
for standard in $cxx_standards; do
    "$CXX" "-std=$standard" "${strict[@]}" -Wundef "$work"/alone/*.cpp || fail "alone, as $standard"
done
"$CC" -std=c99 "${strict[@]}" "$work"/orders/*.c || fail "in some order, as C99"
"$CXX" -std=c++11 "${strict[@]}" "$work"/orders/*.cpp || fail "in some order, as C++11"
echo "5 headers as $c_standards $cxx_standards; 120 orders"
