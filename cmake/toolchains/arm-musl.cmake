# SPDX-License-Identifier: Apache-2.0
# 32-bit ARM, hard float, with the small C library musl, as on a router. Needs Debian's
# g++-arm-linux-gnueabihf, musl:armhf and musl-dev:armhf. Programs are linked
# statically and run under Debian's qemu-user-static.
#
# The compiler is the C driver. It compiles C++, but finds no C++ headers and links no
# C++ library, so code that needs the C++ runtime does not build.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR arm)
set(CMAKE_C_COMPILER arm-linux-gnueabihf-gcc)
set(CMAKE_CXX_COMPILER arm-linux-gnueabihf-gcc)
set(ALG_MUSL "-specs=/usr/lib/arm-linux-musleabihf/musl-gcc.specs")
set(CMAKE_C_FLAGS_INIT "${ALG_MUSL} -fno-pie -fno-stack-protector")
# The call graph reports do not change the code; scripts/footprint reads them.
set(CMAKE_CXX_FLAGS_INIT "${ALG_MUSL} -fno-pie -fno-stack-protector -nostdinc++ -fcallgraph-info=su")
set(CMAKE_EXE_LINKER_FLAGS_INIT "-static -no-pie")
set(CMAKE_CROSSCOMPILING_EMULATOR qemu-arm-static)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

set(ALG_FREESTANDING_TESTS ON)
set(ALG_FOOTPRINT_TESTS ON)
