# SPDX-License-Identifier: Apache-2.0
# What all targets share; their toolchain files include it. They set ALG_MACHINE, the
# prefix of the compiler, and CMAKE_CROSSCOMPILING_EMULATOR if the build machine cannot
# run the programs. Programs are linked statically.
set(CMAKE_SYSTEM_NAME Linux)
# The C driver compiles C++ too, but links no C++ library.
set(CMAKE_C_COMPILER ${ALG_MACHINE}-gcc)
set(CMAKE_CXX_COMPILER ${ALG_MACHINE}-gcc)
# Code at a fixed address, without what the module does not need: unwind tables and
# checks of the stack. The warnings find accesses that only x86 permits.
string(CONCAT ALG_TARGET_FLAGS "${ALG_C_LIBRARY_FLAGS}${ALG_MACHINE_FLAGS}"
    "-fno-pie -fno-stack-protector -fno-asynchronous-unwind-tables "
    "-fstrict-aliasing -Wstrict-aliasing=2 -Wcast-align=strict")
set(CMAKE_C_FLAGS_INIT "${ALG_TARGET_FLAGS}")
set(CMAKE_CXX_FLAGS_INIT "${ALG_TARGET_FLAGS} -nostdinc++")
set(CMAKE_EXE_LINKER_FLAGS_INIT "-static -no-pie")
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

set(ALG_FREESTANDING_TESTS ON)
