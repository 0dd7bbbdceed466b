# SPDX-License-Identifier: Apache-2.0
# 32-bit ARM, hard float, against the small C library musl: the router's terms.
# Debian: g++-arm-linux-gnueabihf, musl:armhf, musl-dev:armhf; what is built
# is static and runs under qemu-user-static.
#
# The compiler is the C driver, which compiles C++ but links no C++ library and
# finds no C++ header: what needs the C++ runtime does not build here.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR arm)
set(CMAKE_C_COMPILER arm-linux-gnueabihf-gcc)
set(CMAKE_CXX_COMPILER arm-linux-gnueabihf-gcc)
set(ALG_MUSL "-specs=/usr/lib/arm-linux-musleabihf/musl-gcc.specs")
set(CMAKE_C_FLAGS_INIT "${ALG_MUSL} -fno-pie -fno-stack-protector")
# The reports along the call graph change no code; scripts/footprint reads them.
set(CMAKE_CXX_FLAGS_INIT "${ALG_MUSL} -fno-pie -fno-stack-protector -nostdinc++ -fcallgraph-info=su")
set(CMAKE_EXE_LINKER_FLAGS_INIT "-static -no-pie")
set(CMAKE_CROSSCOMPILING_EMULATOR qemu-arm-static)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

set(ALG_FREESTANDING_TESTS ON)
set(ALG_FOOTPRINT_TESTS ON)
