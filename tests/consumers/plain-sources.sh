#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# The module builds from its sources alone, with and without include directories,
# and the C compiler alone links it.
. "$(dirname "$0")/common.sh"

"$CC" -std=c11 "-I$repository/alg" -c "$repository/examples/minimal_host.c" -o "$work/minimal_host.o"

for includes in '' -I. -Ialg; do
    objects=$work/objects$includes
    # shellcheck disable=SC2086 # no option at all where it is empty
    compile_plainly "$objects" $includes
    "$CC" "$work/minimal_host.o" "$objects"/*.o -o "$objects/minimal_host"
    (cd "$objects" && ./minimal_host)
done
