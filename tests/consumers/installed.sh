#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# CMake's find_package and pkg-config find the installed module, static and shared, in a
# prefix of its own, in a shared one, after a move, and in absolute directories. Both
# report the version that the header states. What is installed is in manifest.txt.
. "$(dirname "$0")/common.sh"

compilers=(-DCMAKE_C_COMPILER="$CC" -DCMAKE_CXX_COMPILER="$CXX" -DCMAKE_C_FLAGS= -DCMAKE_CXX_FLAGS=)

# Builds the module into the directory of its linkage. No tools, so none of their libraries.
build() {
    local linkage=$1 shared=$2
    shift 2
    "$CMAKE" -S "$repository" -B "$work/$linkage" "${compilers[@]}" -DBUILD_SHARED_LIBS="$shared" \
        -DCMAKE_BUILD_TYPE=Release -DALG_BUILD_TESTS=OFF -DALG_BUILD_EXAMPLES=OFF -DALG_BUILD_TOOLS=OFF \
        "$@" > "$work/configure.txt" || { cat "$work/configure.txt"; fail "configuring the $linkage module"; }
    "$CMAKE" --build "$work/$linkage"
}
relative=(-DCMAKE_INSTALL_LIBDIR=lib -DCMAKE_INSTALL_INCLUDEDIR=include)
build static OFF "${relative[@]}"
build shared ON "${relative[@]}"

# A host in C whose project knows C++ too.
readme_host
mkdir "$work/project"
cp "$work/host.c" "$work/project"
cat > "$work/project/CMakeLists.txt" << 'END'
cmake_minimum_required(VERSION 3.21)
project(host LANGUAGES ${LANGUAGES})
find_package(algDataInterface 1.0 REQUIRED CONFIG COMPONENTS ${COMPONENTS})
add_executable(host host.c)
target_link_libraries(host PRIVATE alg::data_interface)
file(WRITE ${CMAKE_BINARY_DIR}/version.txt ${algDataInterface_VERSION})
END

libraries_of() { readelf -d "$1" | sed -nE 's/.*\(NEEDED\).*\[(.*)\].*/\1/p' | sort | tr '\n' ' '; }
static_host='libc.so.6 '
shared_host='libalg_data_interface.so.1 libc.so.6 '

# Configures, builds and runs the host. It needs the expected libraries and no other.
found_by_cmake() {
    local prefix=$1 expected=$2
    shift 2
    rm -rf "$work/found"
    "$CMAKE" -S "$work/project" -B "$work/found" "${compilers[@]}" -DCMAKE_PREFIX_PATH="$prefix" "$@"
    "$CMAKE" --build "$work/found"
    run_readme_host "$work/found/host"
    [ "$(libraries_of "$work/found/host")" = "$expected" ] ||
        fail "with $*, the host needs $(libraries_of "$work/found/host"), expected $expected"
}

not_found_by_cmake() {
    local prefix=$1 reason=$2
    shift 2
    rm -rf "$work/found"
    ! "$CMAKE" -S "$work/project" -B "$work/found" "${compilers[@]}" -DLANGUAGES=C \
        -DCMAKE_PREFIX_PATH="$prefix" "$@" > "$work/configure.txt" 2>&1 || fail "with $*, the module is found"
    grep -qF "$reason" "$work/configure.txt" ||
        { cat "$work/configure.txt"; fail "with $*, no reason: $reason"; }
}

found_by_pkg_config() {
    local directory=$1 libraries=$2
    shift 2
    export PKG_CONFIG_PATH=$directory/pkgconfig
    # shellcheck disable=SC2046 # flags, one word each
    "$CC" -std=c11 "$work/host.c" $(pkg-config --cflags --libs "$@" alg-data-interface) "${link[@]}" \
        -o "$work/host"
    LD_LIBRARY_PATH=$directory run_readme_host "$work/host"
    [ "$(libraries_of "$work/host")" = "$libraries" ] ||
        fail "the host needs $(libraries_of "$work/host"), expected $libraries"
    [ "$(pkg-config --variable=libdir alg-data-interface)" -ef "$directory" ] ||
        fail "libdir is $(pkg-config --variable=libdir alg-data-interface), expected $directory"
}

# ---- Each in a prefix of its own --------------------------------------------

for linkage in static shared; do
    prefix=$work/prefix-$linkage
    "$CMAKE" --install "$work/$linkage" --prefix "$prefix"
    compare_with_manifest "$prefix" release "development $linkage" "runtime $linkage" "manual $linkage"
done
for languages in C 'C;CXX'; do
    found_by_cmake "$work/prefix-static" "$static_host" -DLANGUAGES="$languages"
    found_by_cmake "$work/prefix-shared" "$shared_host" -DLANGUAGES="$languages"
done
not_found_by_cmake "$work/prefix-static" "The component shared is not installed." -DCOMPONENTS=shared
not_found_by_cmake "$work/prefix-shared" "The component static is not installed." -DCOMPONENTS=static
not_found_by_cmake "$work/prefix-static" "The component tools is not installed." '-DCOMPONENTS=static;tools'

# ---- Both in one prefix, which is moved then --------------------------------

for linkage in static shared; do
    "$CMAKE" --install "$work/$linkage" --prefix "$work/prefix-before"
done
mv "$work/prefix-before" "$work/prefix"
compare_with_manifest "$work/prefix" release \
    "development static" "development shared" "runtime static" "runtime shared" "manual static"
found_by_cmake "$work/prefix" "$static_host" -DLANGUAGES=C
found_by_cmake "$work/prefix" "$shared_host" -DLANGUAGES=C -DBUILD_SHARED_LIBS=ON
found_by_cmake "$work/prefix" "$static_host" -DLANGUAGES=C -DCOMPONENTS=static -DBUILD_SHARED_LIBS=ON
found_by_cmake "$work/prefix" "$shared_host" -DLANGUAGES=C -DCOMPONENTS=shared

link=()
found_by_pkg_config "$work/prefix/lib" "$shared_host"
link=(-static)
found_by_pkg_config "$work/prefix/lib" '' --static

# ---- Absolute directories ---------------------------------------------------

link=()
for linkage in static shared; do
    shared=OFF
    expected=$static_host
    [ $linkage = static ] || { shared=ON; expected=$shared_host; }
    here=$work/absolute-$linkage
    build $linkage $shared -DCMAKE_INSTALL_PREFIX="$here" \
        -DCMAKE_INSTALL_LIBDIR="$here/libraries" -DCMAKE_INSTALL_INCLUDEDIR="$here/headers"
    "$CMAKE" --install "$work/$linkage"
    found_by_pkg_config "$here/libraries" "$expected"
    found_by_cmake "$here" "$expected" -DLANGUAGES=C \
        -DalgDataInterface_DIR="$here/libraries/cmake/algDataInterface"
done

# ---- Components -------------------------------------------------------------

build shared ON "${relative[@]}"
for component in runtime development manual; do
    "$CMAKE" --install "$work/shared" --prefix "$work/only-$component" --component $component
    compare_with_manifest "$work/only-$component" release "$component shared"
done

# ---- One version ------------------------------------------------------------

cat > "$work/version.c" << 'END'
#include "dataInterface.h"
#include <stdio.h>
int g_yra_debug;
void libzo_log(const char* format, ...) { (void)format; }
int main(void)
{
    printf("%d.%d.%d %d.%d.%d %s\n", ALG_DATA_INTERFACE_VERSION_MAJOR, ALG_DATA_INTERFACE_VERSION_MINOR,
           ALG_DATA_INTERFACE_VERSION_PATCH, ALG_DATA_INTERFACE_VERSION_NUM >> 16,
           ALG_DATA_INTERFACE_VERSION_NUM >> 8 & 255, ALG_DATA_INTERFACE_VERSION_NUM & 255,
           ALG_DATA_INTERFACE_VERSION);
}
#define MAJOR ALG_DATA_INTERFACE_VERSION_MAJOR
#define MINOR ALG_DATA_INTERFACE_VERSION_MINOR
#define PATCH ALG_DATA_INTERFACE_VERSION_PATCH
#if !ALG_DATA_INTERFACE_AT_LEAST(1, 0, 0) || !ALG_DATA_INTERFACE_AT_LEAST(MAJOR, MINOR, PATCH)
#error "older than itself"
#endif
#if ALG_DATA_INTERFACE_AT_LEAST(MAJOR, MINOR, PATCH + 1) || \
    ALG_DATA_INTERFACE_AT_LEAST(MAJOR, MINOR + 1, 0) || ALG_DATA_INTERFACE_AT_LEAST(MAJOR + 1, 0, 0)
#error "newer than itself"
#endif
END
export PKG_CONFIG_PATH=$work/prefix/lib/pkgconfig
version=$(pkg-config --modversion alg-data-interface)
[[ $version =~ ^[0-9]+\.[0-9]+\.[0-9]+$ ]] || fail "pkg-config has no version: $version"
[ "$(cat "$work/found/version.txt")" = "$version" ] ||
    fail "CMake finds version $(cat "$work/found/version.txt"), pkg-config $version"
"$CC" -std=c11 -Wall -Werror -I"$work/prefix/include/algDataInterface" "$work/version.c" -o "$work/version"
[ "$("$work/version")" = "$version $version $version" ] ||
    fail "the header states $("$work/version") as numbers, number and text, pkg-config $version"
