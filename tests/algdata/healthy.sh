#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
#
# `algdata check` and `algdata audit` find no faults in the files of a healthy host, and
# the files of `algdata tree` do not disagree, for several simulated homes and numbers of
# rounds.
#
#   healthy.sh MESH_ROUND ALGDATA
set -eu
host=$(realpath "$1")
algdata=$(realpath "$2")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"

for run in '--rounds 3 --seed 1' '--rounds 1 --seed 2' '--rounds 60 --seed 3' '--rounds 10 --seed 10'; do
    rm -rf mesh
    mkdir mesh
    # shellcheck disable=SC2086 # two options
    "$host" $run mesh > /dev/null
    findings=$("$algdata" check mesh --format ndjson; "$algdata" audit mesh --format ndjson)
    if [ -n "$findings" ]; then
        echo "findings after mesh_round $run:"
        echo "$findings"
        exit 1
    fi
    # These files have notes: so the check did read them.
    "$algdata" check mesh --notes --format ndjson | grep -q '"severity":"note"'
    tree=$("$algdata" tree mesh)
    if [ "$(grep -c 0a4e0000000 <<< "$tree")" != 6 ]; then
        printf 'expected 6 devices after mesh_round %s:\n%s\n' "$run" "$tree"
        exit 1
    fi
done
