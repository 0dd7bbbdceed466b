#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# CMake's find_package and pkg-config find the installed module. Both report the
# version that the header states.
. "$(dirname "$0")/common.sh"

readme_host
mkdir "$work/host"
cp "$work/host.c" "$work/host"
cat > "$work/host/CMakeLists.txt" << END
cmake_minimum_required(VERSION 3.21)
project(host LANGUAGES C)
find_package(algDataInterface 1.0 REQUIRED CONFIG)
add_executable(host host.c)
target_link_libraries(host PRIVATE alg::data_interface)
file(WRITE \${CMAKE_BINARY_DIR}/version.txt \${algDataInterface_VERSION})
END
cat > "$work/version.c" << 'END'
#include "dataInterface.h"
#include <stdio.h>
int g_yra_debug;
void libzo_log(const char* format, ...) { (void)format; }
int main(void)
{
    printf("%d.%d.%d %s\n", ALG_DATA_INTERFACE_VERSION_MAJOR, ALG_DATA_INTERFACE_VERSION_MINOR,
           ALG_DATA_INTERFACE_VERSION_PATCH, ALG_DATA_INTERFACE_VERSION);
}
END
compilers=(-DCMAKE_C_COMPILER="$CC" -DCMAKE_CXX_COMPILER="$CXX" -DCMAKE_C_FLAGS= -DCMAKE_CXX_FLAGS=)

for shared in OFF ON; do
    here=$work/shared-$shared
    "$CMAKE" -S "$repository" -B "$here/build" "${compilers[@]}" -DBUILD_SHARED_LIBS=$shared \
        -DALG_BUILD_TESTS=OFF -DALG_BUILD_EXAMPLES=OFF -DALG_BUILD_TOOLS=OFF \
        -DCMAKE_INSTALL_PREFIX="$here/prefix" -DCMAKE_INSTALL_LIBDIR=lib
    "$CMAKE" --build "$here/build"
    "$CMAKE" --install "$here/build"
    rm -rf "$here/build" # a host has only the installed files

    "$CMAKE" -S "$work/host" -B "$here/found" "${compilers[@]}" -DCMAKE_PREFIX_PATH="$here/prefix"
    "$CMAKE" --build "$here/found"
    run_readme_host "$here/found/host"

    export PKG_CONFIG_PATH=$here/prefix/lib/pkgconfig
    version=$(pkg-config --modversion alg-data-interface)
    # shellcheck disable=SC2046 # flags, one word each
    "$CC" -std=c11 "$work/host.c" $(pkg-config --cflags --libs alg-data-interface) -o "$here/host"
    LD_LIBRARY_PATH=$here/prefix/lib run_readme_host "$here/host"

    [[ $version =~ ^[0-9]+\.[0-9]+\.[0-9]+$ ]] || fail "pkg-config has no version: $version"
    [ "$(cat "$here/found/version.txt")" = "$version" ] ||
        fail "CMake finds version $(cat "$here/found/version.txt"), pkg-config $version"
    "$CC" -std=c11 -I"$here/prefix/include/algDataInterface" "$work/version.c" -o "$here/version"
    [ "$("$here/version")" = "$version $version" ] ||
        fail "the header states $("$here/version") as numbers and text, pkg-config $version"
done
