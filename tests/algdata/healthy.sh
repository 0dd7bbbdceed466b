#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
#
# The files that a healthy host writes have no finding, whatever home it simulates
# and however many rounds it runs.
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
    # The check has looked: there is something to note about these files.
    "$algdata" check mesh --notes --format ndjson | grep -q '"severity":"note"'
done
