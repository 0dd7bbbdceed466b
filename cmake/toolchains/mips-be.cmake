# SPDX-License-Identifier: Apache-2.0
# 32-bit MIPS, big-endian, with the GNU C library.
set(CMAKE_SYSTEM_PROCESSOR mips)
set(CMAKE_CROSSCOMPILING_EMULATOR qemu-mips-static)
set(ALG_MACHINE mips-linux-gnu)
include(${CMAKE_CURRENT_LIST_DIR}/target.cmake)
