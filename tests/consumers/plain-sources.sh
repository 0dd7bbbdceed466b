#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# The module compiles without a build system, with and without include directories, and
# the C compiler links it without the C++ library.
. "$(dirname "$0")/common.sh"

"$CC" -std=c11 "-I$repository/alg" -c "$repository/examples/minimal_host.c" -o "$work/minimal_host.o"

for includes in '' -I. -Ialg; do
    objects=$work/objects$includes
    # shellcheck disable=SC2086 # an empty value is no option
    compile_plainly "$objects" $includes
    "$CC" "$work/minimal_host.o" "$objects"/*.o -o "$objects/minimal_host"
    (cd "$objects" && ./minimal_host)
done
