# SPDX-License-Identifier: Apache-2.0
# 32-bit ARM, hard float, with musl: the target that the budget of size and memory is for.
set(CMAKE_SYSTEM_PROCESSOR arm)
set(CMAKE_CROSSCOMPILING_EMULATOR qemu-arm-static)
set(ALG_MACHINE arm-linux-gnueabihf)
set(ALG_MUSL arm-linux-musleabihf)
include(${CMAKE_CURRENT_LIST_DIR}/musl.cmake)

# The call graph reports do not change the code; scripts/footprint reads them.
string(APPEND CMAKE_CXX_FLAGS_INIT " -fcallgraph-info=su")
set(ALG_FOOTPRINT_TESTS ON)
