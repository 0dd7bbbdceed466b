# SPDX-License-Identifier: Apache-2.0
# 32-bit ARM, hard float, against the GNU C library. Debian:
# g++-arm-linux-gnueabihf; what is built is static and runs under
# qemu-user-static.
#
# The tests run under the same small runner as on musl, so that what differs
# between the two runs is the C library alone.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR arm)
set(CMAKE_C_COMPILER arm-linux-gnueabihf-gcc)
set(CMAKE_CXX_COMPILER arm-linux-gnueabihf-g++)
set(CMAKE_EXE_LINKER_FLAGS_INIT "-static")
set(CMAKE_CROSSCOMPILING_EMULATOR qemu-arm-static)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

set(ALG_FREESTANDING_TESTS ON)
