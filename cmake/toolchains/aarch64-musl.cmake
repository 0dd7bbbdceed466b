# SPDX-License-Identifier: Apache-2.0
# 64-bit ARM with musl.
set(CMAKE_SYSTEM_PROCESSOR aarch64)
set(CMAKE_CROSSCOMPILING_EMULATOR qemu-aarch64-static)
set(ALG_MACHINE aarch64-linux-gnu)
set(ALG_MUSL aarch64-linux-musl)
include(${CMAKE_CURRENT_LIST_DIR}/musl.cmake)
