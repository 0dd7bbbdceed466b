# SPDX-License-Identifier: Apache-2.0
# shellcheck shell=bash
#
# Functions for the cases of `algdata watch`. A case starts it, makes changes, waits for
# the lines that show them, and ends it.
: "${scratch:?}"

# Waits until a command succeeds, but not forever.
wait_until() {
    local i
    for ((i = 0; i < 1000; i++)); do
        if "$@"; then return; fi
        sleep 0.02
    done
    echo "waited in vain for: $*"
}

start() {
    : >"$scratch.messages"
    algdata watch "$@" >"$scratch.changes" 2>"$scratch.messages" &
    watch=$!
    wait_until grep -q '^algdata: watching' "$scratch.messages"
}

has_lines() { [ "$(wc -l <"$scratch.changes")" -ge "$1" ]; }

# Waits until so many lines are shown in all.
shown() { wait_until has_lines "$1"; }

has_ended() { ! kill -0 "$watch" 2>/dev/null; }

# Ends it, unless it has ended, and prints what it showed, without the times.
finish() {
    kill "$watch" 2>/dev/null
    wait "$watch"
    echo "status $?"
    sed -E 's/[0-9]{4}-[0-9]{2}-[0-9]{2}.[0-9]{2}:[0-9]{2}:[0-9]{2}Z?/TIME/' "$scratch.changes"
    cat "$scratch.messages"
    rm -f "$scratch.changes" "$scratch.messages"
}
