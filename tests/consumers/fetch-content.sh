#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# A CMake build fetches the module from a local archive of the sources. It needs no tools
# and none of their libraries, and installs nothing of the module unless it asks for it.
. "$(dirname "$0")/common.sh"

# The sources with one directory at the top, as in a release, without builds.
tar --create --gzip --file "$work/algDataInterface.tar.gz" --directory "$repository" \
    --transform 's|^\./|algDataInterface/|' --exclude='./build*' --exclude='./demo-*' --exclude='./.git' .

readme_host
mkdir "$work/host"
cp "$work/host.c" "$work/host"
cat > "$work/host/CMakeLists.txt" << END
cmake_minimum_required(VERSION 3.21...3.25)
project(host LANGUAGES C)
include(FetchContent)
FetchContent_Declare(algDataInterface URL $work/algDataInterface.tar.gz)
FetchContent_MakeAvailable(algDataInterface)
add_executable(host host.c)
target_link_libraries(host PRIVATE alg::data_interface)
install(TARGETS host)
END

configure() {
    "$CMAKE" --no-warn-unused-cli -S "$work/host" -B "$work/build" \
        -DCMAKE_C_COMPILER="$CC" -DCMAKE_CXX_COMPILER="$CXX" -DCMAKE_C_FLAGS= -DCMAKE_CXX_FLAGS= \
        -DCMAKE_DISABLE_FIND_PACKAGE_{CLI11,fmt,nlohmann_json,SQLite3,Edit,LibArchive,ZLIB,GTest}=ON "$@"
}
installed_files() { (cd "$1" && find . ! -type d | sort | tr '\n' ' '); }

configure 2> "$work/warnings.txt"
[ ! -s "$work/warnings.txt" ] || { cat "$work/warnings.txt"; fail "configuring warns"; }
"$CMAKE" --build "$work/build"
run_readme_host "$work/build/host"
"$CMAKE" --install "$work/build" --prefix "$work/prefix"
[ "$(installed_files "$work/prefix")" = "./bin/host " ] ||
    fail "the host installs $(installed_files "$work/prefix")"

configure -DALG_INSTALL=ON -DCMAKE_INSTALL_LIBDIR=lib
"$CMAKE" --install "$work/build" --prefix "$work/both"
[ -f "$work/both/lib/libalg_data_interface.a" ] || fail "ALG_INSTALL does not install the module"
