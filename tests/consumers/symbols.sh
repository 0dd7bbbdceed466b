#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# The archive exports the interface with C linkage. It needs nothing from its host
# except the C library, the log function and the log level. So does the shared library,
# which exports nothing else.
. "$(dirname "$0")/common.sh"

settings='ai_yra_patc_compensation ai_yra_rssi_compensation'
tables='peekThr peekThrStructure'
host='g_yra_debug libzo_log'

# The allowed functions of the C library. With other options, the compiler calls other
# functions: the variants of fortified builds, and replacements for simple calls.
c_library='
    fopen fclose fread fwrite ferror setvbuf snprintf strtof
    __fbufsize __fpending
    calloc realloc free
    memchr memcpy memmove memset strcmp strncmp strncpy strlen strnlen
    __snprintf_chk __fread_chk __memcpy_chk __memmove_chk __strncpy_chk __strnlen_chk
    __stack_chk_fail __stack_chk_guard _GLOBAL_OFFSET_TABLE_'

# shellcheck disable=SC2048,SC2086 # one name per word
words() { printf '%s\n' $* | sort -u; }

# The functions that the header declares: one statement per line, and the name before
# its first parenthesis.
"$CC" -std=c11 -E -P "$repository/alg/dataInterface.h" | tr '\n' ' ' | tr ';' '\n' |
    sed -nE 's/^[^(]*[A-Za-z0-9_]+[ *]+([A-Za-z0-9_]+) *\(.*/\1/p' | grep -vx libzo_log |
    sort > "$work/functions.txt"
[ "$(uniq "$work/functions.txt" | wc -l)" -eq 51 ] ||
    fail "the header declares $(wc -l < "$work/functions.txt") functions, not 51"

# The symbols of an archive whose nm type is one of the given letters.
names() { awk -v types="$2" 'NF == 3 && index(types, $2) { print $3 }' "$1" | sort -u; }

# Compares two sorted lists and shows the differences.
same() { diff -u "$2" "$3" || fail "$1"; }

check_archive() {
    local archive=$1 list=$1.nm
    "$NM" "$archive" > "$list"

    names "$list" T > "$work/text.txt"
    comm -23 "$work/functions.txt" "$work/text.txt" > "$work/absent.txt"
    [ ! -s "$work/absent.txt" ] || fail "without C linkage: $(tr '\n' ' ' < "$work/absent.txt")"

    # Only the settings are writable; the tables are constants.
    names "$list" dDbBsSgGC > "$work/writable.txt"
    words "$settings" > "$work/expected.txt"
    same "the writable data of the module" "$work/expected.txt" "$work/writable.txt"
    names "$list" R > "$work/constant.txt"
    words "$tables" > "$work/expected.txt"
    same "the exported constants of the module" "$work/expected.txt" "$work/constant.txt"

    # Everything private is in one namespace, so that it cannot clash with a name of the host.
    awk 'NF == 3 && $2 ~ /[A-Z]/ { print $3 }' "$list" | sort -u > "$work/global.txt"
    words "$(cat "$work/functions.txt")" "$settings" "$tables" > "$work/expected.txt"
    grep -v '12alg_internal' "$work/global.txt" | comm -23 - "$work/expected.txt" > "$work/stray.txt"
    [ ! -s "$work/stray.txt" ] ||
        fail "outside the interface and the namespace: $(tr '\n' ' ' < "$work/stray.txt")"

    awk '$1 == "U" { print $2 }' "$list" | sort -u > "$work/undefined.txt"
    awk 'NF == 3 { print $3 }' "$list" | sort -u > "$work/defined.txt"
    comm -23 "$work/undefined.txt" "$work/defined.txt" > "$work/needed.txt"
    words "$c_library" "$host" > "$work/allowed.txt"
    comm -23 "$work/needed.txt" "$work/allowed.txt" > "$work/foreign.txt"
    [ ! -s "$work/foreign.txt" ] || fail "needs from its host: $(tr '\n' ' ' < "$work/foreign.txt")"
    for name in $host; do
        grep -qx "$name" "$work/needed.txt" || fail "$name is not needed from the host"
    done
    echo "$(basename "$archive"): 51 functions, 2 settings, 2 tables;" \
        "$(wc -l < "$work/needed.txt") symbols needed from the host"
}

for optimisation in -O0 -O2; do
    compile_plainly "$work/objects$optimisation" "$optimisation" -fPIC
    "$AR" rcs "$work/plain$optimisation.a" "$work/objects$optimisation"/*.o
    check_archive "$work/plain$optimisation.a"
done

# A shared library that is linked without a version script exports only the interface, too.
"$CC" -shared "$work"/objects-O2/*.o -o "$work/plain.so"
"$NM" -D --defined-only "$work/plain.so" | awk '{ print $3 }' | sort -u > "$work/exported.txt"
words "$(cat "$work/functions.txt")" "$settings" "$tables" > "$work/interface.txt"
same "the symbols of the shared library" "$work/interface.txt" "$work/exported.txt"

# abi/symbols.map lists the interface. The shared library exports each symbol with its version.
awk '/\{$/ { version = $1 } /^ +[A-Za-z0-9_]+;$/ { sub(";", ""); print $1 "@@" version }' \
    "$repository/abi/symbols.map" | sort > "$work/versioned.txt"
sed 's/@@.*//' "$work/versioned.txt" | sort > "$work/listed.txt"
same "the symbols in abi/symbols.map" "$work/interface.txt" "$work/listed.txt"

# So does the list of the Debian package, as "name@version".
awk '/^ .*@/ { sub("@", "@@", $1); print $1 }' "$repository"/debian/*.symbols | grep -v '^ALG_' |
    sort > "$work/packaged.txt"
same "the symbols in debian/" "$work/versioned.txt" "$work/packaged.txt"

"$CMAKE" -S "$repository" -B "$work/shared" -DBUILD_SHARED_LIBS=ON -DCMAKE_BUILD_TYPE=Release \
    -DCMAKE_C_COMPILER="$CC" -DCMAKE_CXX_COMPILER="$CXX" -DCMAKE_C_FLAGS= -DCMAKE_CXX_FLAGS= \
    -DALG_BUILD_TESTS=OFF -DALG_BUILD_EXAMPLES=OFF -DALG_BUILD_TOOLS=OFF
"$CMAKE" --build "$work/shared"
library=$work/shared/libalg_data_interface.so
# The node of a version is a symbol of type A.
"$NM" -D --defined-only "$library" | awk '$2 != "A" { print $3 }' | sort > "$work/exported.txt"
same "the versioned symbols of the shared library" "$work/versioned.txt" "$work/exported.txt"

major=$(sed -n 's/^#define ALG_DATA_INTERFACE_VERSION_MAJOR //p' "$repository/alg/dataInterface.h")
# The loader is needed where it has the guard of the stack.
readelf -d "$library" | sed -nE 's/.*\((NEEDED|SONAME)\).*\[(.*)\].*/\1 \2/p' | grep -v 'NEEDED ld-linux' \
    > "$work/dynamic.txt"
printf '%s\n' 'NEEDED libc.so.6' "SONAME libalg_data_interface.so.$major" > "$work/expected.txt"
same "what the shared library needs, and its name" "$work/expected.txt" "$work/dynamic.txt"
echo "$(basename "$library"): $(wc -l < "$work/exported.txt") symbols"
