#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
#
# `algdata check` finds no faults in the files of a healthy host, for several simulated
# homes and numbers of rounds.
#
#   healthy.sh MESH_ROUND ALGDATA
set -eu
host=$(realpath "$1")
algdata=$(realpath "$2")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"

for run in '--rounds 3 --seed 1' '--rounds 1 --seed 2' '--rounds 60 --seed 3'; do
    rm -rf mesh
    mkdir mesh
    # shellcheck disable=SC2086 # two options
    "$host" $run mesh > /dev/null
    findings=$("$algdata" check mesh --format ndjson)
    if [ -n "$findings" ]; then
        echo "findings after mesh_round $run:"
        echo "$findings"
        exit 1
    fi
    # These files have notes: so the check did read them.
    "$algdata" check mesh --notes --format ndjson | grep -q '"severity":"note"'
done
