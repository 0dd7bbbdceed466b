#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# The host that README.md shows compiles unchanged and prints the output shown there.
. "$(dirname "$0")/common.sh"

readme_host
compile_plainly "$work/objects"
"$CC" -std=c11 -Wall -Wextra -Wpedantic -Werror "-I$repository/alg" -c "$work/host.c" -o "$work/host.o"
"$CC" "$work/host.o" "$work"/objects/*.o -o "$work/host"
run_readme_host "$work/host"
