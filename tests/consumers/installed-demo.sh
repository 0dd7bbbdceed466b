#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# A build of no more than scripts/demo needs can be installed: the module, and algdata
# with its manual page and its completions. What is installed is in manifest.txt.
. "$(dirname "$0")/common.sh"

targets=$(sed -n 's/^cmake --build .* --target \(.*\) -j.*/\1/p' "$repository/scripts/demo")
[ -n "$targets" ] || fail "scripts/demo names no targets"
"$CMAKE" -S "$repository" -B "$work/build" -DALG_BUILD_TESTS=OFF -DCMAKE_BUILD_TYPE=Debug \
    -DCMAKE_C_COMPILER="$CC" -DCMAKE_CXX_COMPILER="$CXX" -DCMAKE_C_FLAGS= -DCMAKE_CXX_FLAGS= \
    -DCMAKE_INSTALL_PREFIX="$work/prefix" -DCMAKE_INSTALL_LIBDIR=lib
# shellcheck disable=SC2086 # one word per target
"$CMAKE" --build "$work/build" --target $targets
"$CMAKE" --install "$work/build"
compare_with_manifest "$work/prefix" debug "development static" "runtime static" "tools static"
"$CMAKE" --install "$work/build" --prefix "$work/only-tools" --component tools
compare_with_manifest "$work/only-tools" debug "tools static"

"$work/only-tools/bin/algdata" --version || fail "algdata does not run"
empty=$(find "$work/prefix" -type f -empty)
[ -z "$empty" ] || fail "installed, but empty: $empty"

# Both work with the shared library, too. Only the module is compiled again.
"$CMAKE" "$work/build" -DBUILD_SHARED_LIBS=ON
# shellcheck disable=SC2086 # one word per target
"$CMAKE" --build "$work/build" --target $targets
"$CMAKE" --install "$work/build" --prefix "$work/shared"
compare_with_manifest "$work/shared" debug "development shared" "runtime shared" "tools shared"
"$work/shared/bin/algdata" --version || fail "algdata does not run"

# A build finds the command as a program.
mkdir "$work/host"
cat > "$work/host/CMakeLists.txt" << 'END'
cmake_minimum_required(VERSION 3.21)
project(host LANGUAGES NONE)
find_package(algDataInterface 1.0 REQUIRED CONFIG COMPONENTS tools)
add_custom_target(version ALL COMMAND alg::algdata --version VERBATIM)
END
"$CMAKE" -S "$work/host" -B "$work/found" -DCMAKE_PREFIX_PATH="$work/prefix"
"$CMAKE" --build "$work/found" | tee "$work/found.txt"
grep -qx 'algdata [0-9.]*' "$work/found.txt" || fail "the target alg::algdata does not run"
