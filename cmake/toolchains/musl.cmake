# SPDX-License-Identifier: Apache-2.0
# Included by the toolchain files of the targets with musl, after they set ALG_MACHINE
# (the prefix of the compiler) and ALG_MUSL (where Debian has this musl).
#
# Debian has no C++ library for musl. The compiler finds no C++ headers and links no
# C++ library, so code that needs the C++ runtime does not build.
set(ALG_C_LIBRARY_FLAGS "-specs=/usr/lib/${ALG_MUSL}/musl-gcc.specs ")
include(${CMAKE_CURRENT_LIST_DIR}/target.cmake)
