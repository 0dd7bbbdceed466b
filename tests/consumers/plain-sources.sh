#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# The module builds from its sources alone, and the C compiler alone links it.
. "$(dirname "$0")/common.sh"

compile_plainly "$work/objects"
"$CC" -std=c11 "-I$repository/alg" -c "$repository/examples/minimal_host.c" -o "$work/minimal_host.o"
"$CC" "$work/minimal_host.o" "$work"/objects/*.o -o "$work/minimal_host"

cd "$work"
./minimal_host
