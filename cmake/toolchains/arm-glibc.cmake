# SPDX-License-Identifier: Apache-2.0
# 32-bit ARM, hard float, with the GNU C library. Needs Debian's
# g++-arm-linux-gnueabihf. Programs are linked statically and run under Debian's
# qemu-user-static.
#
# The tests use the same small runner as with musl, so that the two runs differ in the
# C library only.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR arm)
set(CMAKE_C_COMPILER arm-linux-gnueabihf-gcc)
set(CMAKE_CXX_COMPILER arm-linux-gnueabihf-g++)
set(CMAKE_EXE_LINKER_FLAGS_INIT "-static")
set(CMAKE_CROSSCOMPILING_EMULATOR qemu-arm-static)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

set(ALG_FREESTANDING_TESTS ON)
