#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
#
# Runs the examples of algdata in README.md and compares what they print with
# what README.md shows.
#
#     readme.sh ALGDATA
set -euo pipefail

program=$(realpath "$1")
root=$(cd "$(dirname "$0")/../.." && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"
mkdir bin data yesterday today
ln -s "$program" bin/algdata
ln -s "$root/tests" tests
export PATH=$work/bin:$PATH LC_ALL=C

# The directories that the examples name: "data" as README.md fills it, and two days of files.
grep '^cp tests/algdata/' "$root/README.md" | bash -e
cp tests/algdata/good/apRank.txt tests/algdata/good/scanning.txt yesterday
sed -e '/^a4c3f0000012/d' -e 's/^a4c3f0000013 .*/a4c3f0000013 a4c3f0000011 3/' \
    -e '$a a4c3f0000014 a4c3f0000011 3' yesterday/apRank.txt > today/apRank.txt
sed -e 1d -e '2s/ 40$/ 33/' yesterday/scanning.txt > today/scanning.txt

# Each block shows one command, after "$ ", and its output.
awk '/^```console$/ { inside = 1; next } /^```$/ { inside = 0 } inside' "$root/README.md" > shown.txt
grep '^\$ ' shown.txt > commands.txt
while IFS= read -r line; do
    echo "$line"
    bash -c "${line#\$ }" < /dev/null || true # the exit status says whether there are findings
done < commands.txt > printed.txt
diff -u shown.txt printed.txt
echo "$(wc -l < commands.txt) examples of README.md print what it shows"
