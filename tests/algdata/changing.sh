#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
#
# Reads files with every command of algdata while they are appended to, cut and
# replaced by other files.
#
#   changing.sh ALGDATA [SECONDS]     by default 5 seconds
#
# Whatever happens to a file, it always holds the first lines of one known text.
# So an answer is right if it is an answer about the first lines of that text, or
# status 2 with the message that the file keeps changing. Prints the number of answers
# per command, and fails at the first wrong answer.

set -u
if [ $# -lt 1 ]; then
    echo "usage: changing.sh ALGDATA [SECONDS]" >&2
    exit 2
fi
program=$(realpath "$1")
seconds=${2:-5}
work=$(mktemp -d)
trap 'kill $(jobs -p); wait; rm -rf "$work"' EXIT
cd "$work" || exit 2

# Scanning records. Each line is different, and all have the same length. The text fits one page of
# memory, and the lines of in.ndjson divide one: a write that crosses a page can be seen in part.
lines=110
for ((i = 0; i < lines; i++)); do
    printf 'a4c3f0000010 a4c3f0%06x  1  44  %d\n' $((1000 + i)) $((20 + i % 70))
done > all.txt

mkdir data records imported aside
head -n 3 all.txt > data/scan.txt

# Appends whole lines of text $1 to file $2, cuts it after whole lines, and puts another file in its place.
change() {
    local width have i text
    trap exit TERM # runs after the current command has ended
    mapfile -t text < "$1"
    width=$((${#text[0]} + 1))
    while :; do
        for have in 3 80 17 109 1 60; do
            head -n $have "$1" > "aside/${2##*/}"
            mv "aside/${2##*/}" "$2"
            for ((i = have; i < lines && i < have + 40; i++)); do
                printf '%s\n' "${text[i]}" >> "$2"
            done
            truncate -s $((width * have)) "$2"
        done
    done
}

# The command, and the file whose beginning was expected.
fail() {
    echo "wrong answer of: $1 (status $status)" >&2
    cmp out "${2:-/dev/null}" >&2
    head -n 5 messages | cut -c 1-200 >&2
    tail -n 3 out | cut -c 1-200 | cat -v >&2
    exit 1
}

# Whether the file `out` is the beginning of the file $1.
begins() { cmp -s -n "$(stat -c %s out)" out "$1"; }

# Runs a command with its output in the files `out` and `messages`. Fails if the file kept changing.
ask() {
    "$program" "$@" > out 2> messages
    status=$?
    if [ "$status" -eq 2 ] && grep -q "it keeps changing while it is read" messages; then
        unsettled=$((unsettled + 1))
        return 1
    fi
    answers=$((answers + 1))
    return 0
}

# The outputs for the complete text.
"$program" export all.txt -f csv --columns neighbourMAC,rssi --kind scanning |
    sed 's/all.txt/data\/scan.txt/' > all.csv
"$program" export all.txt -f ndjson --view loaded | sed 's/all.txt/data\/scan.txt/' > all.ndjson
"$program" export all.txt -f ndjson > in.ndjson
head -n 3 in.ndjson > records/scan.ndjson
"$program" show all.txt | tail -n +2 > all.table
"$program" show all.txt --view loaded | tail -n +2 > all.loaded

# Fails unless the answer has status 0 and is the beginning of the file $2.
expect() { if [ "$status" -ne 0 ] || ! begins "$2"; then fail "$1" "$2"; fi; }

export_csv() {
    if ask export data/scan.txt -f csv --columns neighbourMAC,rssi --kind scanning; then
        expect export all.csv
    fi
}

export_loaded() {
    if ask export data -f ndjson --view loaded; then expect "export --view loaded" all.ndjson; fi
}

# Without the title, which contains the number of records.
show() {
    ask show data/scan.txt || return
    sed -i 1d out
    expect show all.table
}

show_loaded() {
    ask show data --view loaded || return
    sed -i 1d out
    expect "show --view loaded" all.loaded
}

check() {
    ask check data || return
    if [ "$status" -ne 0 ] || [ "$(cat out)" != "no faults in 1 file" ]; then fail check; fi
}

# Every line has another neighbour, so there are as many neighbours as records.
stats() {
    ask stats data/scan.txt -f csv || return
    local records distinct
    IFS=, read -r _ _ records _ < <(sed -n 2p out)
    distinct=$(tr -d '\r' < out | awk -F, '$7 == "neighbourMAC" { print $10 }')
    if [ "$status" -ne 0 ] || [ "$records" != "$distinct" ] || [ "$records" -lt 1 ]; then fail stats; fi
}

# Compared with the complete text, its first lines have only removed records.
diff_all() {
    ask diff all.txt data/scan.txt || return
    local expected=2
    case $(tail -n 1 out) in
    "0 added, "*" removed, 0 changed") expected=1 ;;
    "no differences") expected=0 ;;
    *) fail diff ;;
    esac
    if [ "$status" -ne $expected ]; then fail diff; fi
}

import() {
    ask import --kind scanning records/scan.ndjson -o imported/scan.txt || return
    cp imported/scan.txt out
    expect import all.txt
}

change all.txt data/scan.txt &
change in.ndjson records/scan.ndjson &

unsettled=0
declare -A given
end=$((SECONDS + seconds))
while [ $SECONDS -lt $end ]; do
    for command in export_csv export_loaded show show_loaded check stats diff_all import; do
        answers=0
        $command
        given[$command]=$((${given[$command]-0} + answers))
    done
done
for command in "${!given[@]}"; do
    printf '%-14s %6d answers\n' "$command" "${given[$command]}"
done | sort
echo "a file kept changing: $unsettled times"
