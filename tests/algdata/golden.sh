#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
#
# Runs algdata as users do and compares its output with the expected output.
#
#   golden.sh [--regenerate] ALGDATA [PATTERN...]
#
# PATTERN is a shell pattern of case names, such as 'check-*' or '!(terminal-*)';
# without one, all cases run. A case is golden/NAME.cmd, a shell script that runs
# in this directory, with `algdata` as the program and $scratch as an empty
# directory. NAME.out, NAME.err and NAME.status contain its output, its messages and
# its exit status. A missing file means no output, or status 0.
# --regenerate writes these files: review the differences before you commit them.
#
# The cases named terminal-* run under script(1), which needs a pseudo-terminal.
# Without one they are skipped. The status is 77 when every case was skipped.

set -u
shopt -s extglob nullglob
regenerate=no
if [ "${1-}" = --regenerate ]; then
    regenerate=yes
    shift
fi
if [ $# -lt 1 ]; then
    echo "usage: golden.sh [--regenerate] ALGDATA [PATTERN...]" >&2
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

has_terminal() {
    local answer
    answer=$(script -qec 'if [ -t 1 ]; then echo yes; fi' /dev/null </dev/null 2>/dev/null)
    [[ $answer == yes* ]]
}

# The expected text of a case; empty if there is no file.
expected() { if [ -e "$1" ]; then cat "$1"; fi; }

store() {
    local output=$1 golden=$2
    if [ -s "$output" ]; then cp "$output" "$golden"; else rm -f "$golden"; fi
}

run_case() {
    local name=$1
    export scratch="$work/scratch"
    rm -rf "$scratch"
    mkdir "$scratch"
    timeout 120 bash "golden/$name.cmd" >"$work/out" 2>"$work/err" </dev/null
    local status=$?
    # The name of the temporary directory differs from run to run.
    sed -i "s|$scratch|SCRATCH|g" "$work/out" "$work/err"
    if [ $status -ne 0 ]; then echo $status >"$work/status"; else : >"$work/status"; fi
    local part wrong=0
    for part in out err status; do
        if [ $regenerate = yes ]; then
            store "$work/$part" "golden/$name.$part"
        elif ! diff -a -u --label "$name.$part (expected)" --label "$name.$part (actual)" \
                <(expected "golden/$name.$part") "$work/$part"; then
            wrong=1
        fi
    done
    return $wrong
}

cases=()
for pattern in "${@:-*}"; do
    # shellcheck disable=SC2206 # a pattern, so not quoted
    found=(golden/$pattern.cmd)
    if [ ! -e "${found[0]-}" ]; then
        echo "golden.sh: no case is named $pattern" >&2
        exit 2
    fi
    cases+=("${found[@]}")
done

terminal=unknown
passed=0 failed=0 skipped=0
for path in "${cases[@]}"; do
    name=$(basename "$path" .cmd)
    if [[ $name == terminal-* ]]; then
        if [ $terminal = unknown ]; then
            terminal=no
            if has_terminal; then terminal=yes; fi
        fi
        if [ $terminal = no ]; then
            echo "skipped: $name needs script(1) and a pseudo-terminal"
            skipped=$((skipped + 1))
            continue
        fi
    fi
    if run_case "$name"; then
        passed=$((passed + 1))
    else
        echo "FAILED: $name"
        failed=$((failed + 1))
    fi
done
echo "$passed of ${#cases[@]} cases passed, $skipped skipped"
[ "$skipped" -ne ${#cases[@]} ] || exit 77
[ $failed -eq 0 ]
