# SPDX-License-Identifier: Apache-2.0
# 32-bit MIPS, little-endian, with musl.
set(CMAKE_SYSTEM_PROCESSOR mipsel)
set(CMAKE_CROSSCOMPILING_EMULATOR qemu-mipsel-static)
set(ALG_MACHINE mipsel-linux-gnu)
set(ALG_MUSL mipsel-linux-musl)
include(${CMAKE_CURRENT_LIST_DIR}/musl.cmake)
