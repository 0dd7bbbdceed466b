#!/bin/bash
# SPDX-License-Identifier: Apache-2.0
#
# Runs algdata as users do and compares what it says with what it should say.
#
#   golden.sh [--regenerate] ALGDATA [NAME...]
#
# A case is golden/NAME.cmd, a shell text run in this directory, with
# `algdata` for the program and $scratch for an empty directory. NAME.out,
# NAME.err and NAME.status hold what it prints and its exit status; one that is
# not there stands for nothing printed, or for status 0. --regenerate writes
# them anew: look at the differences before you keep them.

set -u
regenerate=no
if [ "${1-}" = --regenerate ]; then
    regenerate=yes
    shift
fi
if [ $# -lt 1 ]; then
    echo "usage: golden.sh [--regenerate] ALGDATA [NAME...]" >&2
    exit 2
fi
program=$(realpath "$1")
shift
cd "$(dirname "$0")" || exit 2

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
mkdir "$work/bin"
ln -s "$program" "$work/bin/algdata"
export PATH="$work/bin:$PATH" LC_ALL=C TERM=xterm PAGER=cat
unset NO_COLOR

# The expected text of a case, which is empty where there is no file.
expected() { if [ -e "$1" ]; then cat "$1"; fi; }

keep() {
    local got=$1 kept=$2
    if [ -s "$got" ]; then cp "$got" "$kept"; else rm -f "$kept"; fi
}

run_case() {
    local name=$1
    export scratch="$work/scratch"
    rm -rf "$scratch"
    mkdir "$scratch"
    bash "golden/$name.cmd" >"$work/out" 2>"$work/err" </dev/null
    local status=$?
    # Names of temporary directories differ from run to run.
    sed -i "s|$scratch|SCRATCH|g" "$work/out" "$work/err"
    if [ $status -ne 0 ]; then echo $status >"$work/status"; else : >"$work/status"; fi
    local part wrong=0
    for part in out err status; do
        if [ $regenerate = yes ]; then
            keep "$work/$part" "golden/$name.$part"
        elif ! diff -a -u --label "$name.$part (expected)" --label "$name.$part (got)" \
                <(expected "golden/$name.$part") "$work/$part"; then
            wrong=1
        fi
    done
    return $wrong
}

if [ $# -eq 0 ]; then
    set -- $(cd golden && ls *.cmd | sed 's/\.cmd$//')
fi
failed=0
for name; do
    if ! run_case "$name"; then
        echo "FAILED: $name"
        failed=$((failed + 1))
    fi
done
echo "$(($# - failed)) of $# cases passed"
[ $failed -eq 0 ]
