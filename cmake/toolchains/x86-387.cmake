# SPDX-License-Identifier: Apache-2.0
# 32-bit x86 with the GNU C library and floats on the x87 unit, which computes with more
# precision than a float has. Its programs run on an x86-64 machine without an emulator.
set(CMAKE_SYSTEM_PROCESSOR i686)
set(ALG_MACHINE i686-linux-gnu)
set(ALG_MACHINE_FLAGS "-mfpmath=387 ")
include(${CMAKE_CURRENT_LIST_DIR}/target.cmake)
