#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# A larger CMake build adds the repository as a subdirectory. It gets the module as a
# static or, with BUILD_SHARED_LIBS, a shared library, and its flags do not change.
. "$(dirname "$0")/common.sh"

readme_host
mkdir "$work/host"
cp "$work/host.c" "$work/host"
cat > "$work/host/CMakeLists.txt" << END
cmake_minimum_required(VERSION 3.21)
project(host LANGUAGES C CXX)
enable_testing()
add_subdirectory($repository alg)
add_executable(host host.c)
target_link_libraries(host PRIVATE alg::data_interface)
END

for shared in OFF ON; do
    build=$work/build-shared-$shared
    "$CMAKE" -S "$work/host" -B "$build" -DBUILD_SHARED_LIBS=$shared \
        -DCMAKE_BUILD_TYPE= -DCMAKE_EXPORT_COMPILE_COMMANDS=ON \
        -DCMAKE_C_COMPILER="$CC" -DCMAKE_CXX_COMPILER="$CXX" -DCMAKE_C_FLAGS= -DCMAKE_CXX_FLAGS=
    "$CMAKE" --build "$build"
    run_readme_host "$build/host"

    commands=$build/compile_commands.json
    [ "$(grep -c '"file":.*/alg/.*\.cpp"' "$commands")" -gt 0 ] || fail "the module is not in the build"
    ! grep -E '"command":.* -(O|march|mtune|Werror)' "$commands" ||
        fail "the module adds flags to the host's build"
    ! grep -F -e "\"file\": \"$repository/tests/" -e "\"file\": \"$repository/examples/" "$commands" ||
        fail "the host's build includes tests or examples"
    libraries=$(find "$build" -name 'libalg_data_interface*')
    case $shared in
    OFF) [[ $libraries == *.a ]] || fail "no static library: $libraries" ;;
    ON) [[ $libraries == *.so* && $libraries != *.a ]] || fail "no shared library: $libraries" ;;
    esac
done
