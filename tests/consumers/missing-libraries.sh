#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# If the libraries of algdata and of the example mesh_round are missing, the build skips
# both with a warning that names the packages, and builds the rest.
. "$(dirname "$0")/common.sh"

"$CMAKE" -S "$repository" -B "$work/build" -DALG_BUILD_TESTS=OFF \
    -DCMAKE_C_COMPILER="$CC" -DCMAKE_CXX_COMPILER="$CXX" -DCMAKE_C_FLAGS= -DCMAKE_CXX_FLAGS= \
    -DCMAKE_DISABLE_FIND_PACKAGE_{CLI11,fmt,nlohmann_json,LibArchive,ZLIB}=ON > "$work/configure.txt" 2>&1 ||
    { cat "$work/configure.txt"; fail "configuring fails"; }

# CMake breaks a warning into lines: join them.
warnings=$(tr -s ' \n' ' ' < "$work/configure.txt")
all="libcli11-dev libfmt-dev nlohmann-json3-dev libarchive-dev zlib1g-dev"
for warning in "The example mesh_round is skipped: on Debian, install libcli11-dev to build it." \
    "The command algdata is skipped: on Debian, install $all to build it."; do
    [[ $warnings == *"$warning"* ]] || { cat "$work/configure.txt"; fail "no warning: $warning"; }
done

"$CMAKE" --build "$work/build"
"$work/build/examples/minimal_host" "$work/rank.txt" || fail "minimal_host does not run"
for skipped in examples/mesh_round tools/algdata/algdata; do
    [ ! -e "$work/build/$skipped" ] || fail "$skipped is built"
done
