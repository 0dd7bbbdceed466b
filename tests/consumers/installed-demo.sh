#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# A build of no more than scripts/demo needs can be installed: the module, and
# algdata with its manual page and its completions.
. "$(dirname "$0")/common.sh"

targets=$(sed -n 's/^cmake --build .* --target \(.*\) -j.*/\1/p' "$repository/scripts/demo")
[ -n "$targets" ] || fail "scripts/demo names no targets"
"$CMAKE" -S "$repository" -B "$work/build" -DALG_BUILD_TESTS=OFF -DCMAKE_BUILD_TYPE=Debug \
    -DCMAKE_C_COMPILER="$CC" -DCMAKE_CXX_COMPILER="$CXX" -DCMAKE_C_FLAGS= -DCMAKE_CXX_FLAGS= \
    -DCMAKE_INSTALL_PREFIX="$work/prefix" -DCMAKE_INSTALL_LIBDIR=lib
# shellcheck disable=SC2086 # one word per target
"$CMAKE" --build "$work/build" --target $targets
"$CMAKE" --install "$work/build"

[ -f "$work/prefix/lib/libalg_data_interface.a" ] || fail "the module is not installed"
"$work/prefix/bin/algdata" --version || fail "algdata does not run"
for file in man/man1/algdata.1 bash-completion/completions/algdata zsh/site-functions/_algdata \
    fish/vendor_completions.d/algdata.fish; do
    [ -s "$work/prefix/share/$file" ] || fail "share/$file is not installed, or is empty"
done
