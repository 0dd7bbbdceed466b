# SPDX-License-Identifier: Apache-2.0
# 64-bit RISC-V with the GNU C library.
set(CMAKE_SYSTEM_PROCESSOR riscv64)
set(CMAKE_CROSSCOMPILING_EMULATOR qemu-riscv64-static)
set(ALG_MACHINE riscv64-linux-gnu)
include(${CMAKE_CURRENT_LIST_DIR}/target.cmake)
