#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
#
# The example host durable_host adds a round in each run and leaves no copy.
#
#     host.sh DURABLE_HOST
set -euo pipefail

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

for round in 1 2; do
    expected="saved 1 decision, 1 rank, $round round(s) of delays"
    printed=$("$1" "$work")
    [ "$printed" = "$expected" ] || {
        echo "printed: $printed, expected: $expected" >&2
        exit 1
    }
done
files=$(cd "$work" && echo ./*)
[ "$files" = "./durable_decision.txt ./durable_delays.txt ./durable_ranks.txt" ] || {
    echo "left: $files" >&2
    exit 1
}
