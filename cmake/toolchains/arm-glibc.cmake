# SPDX-License-Identifier: Apache-2.0
# 32-bit ARM, hard float, with the GNU C library.
set(CMAKE_SYSTEM_PROCESSOR arm)
set(CMAKE_CROSSCOMPILING_EMULATOR qemu-arm-static)
set(ALG_MACHINE arm-linux-gnueabihf)
include(${CMAKE_CURRENT_LIST_DIR}/target.cmake)
