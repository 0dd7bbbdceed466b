#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# What docs/porting.md says about linking is true: each error occurs as shown, and its
# fix works.
. "$(dirname "$0")/common.sh"

compile_plainly "$work/objects" -fPIC
"$AR" rcs "$work/libmodule.a" "$work"/objects/*.o
"$CC" -shared "$work"/objects/*.o -o "$work/libmodule.so"
cd "$work"
mkdir run
export LD_LIBRARY_PATH=$work

compile() { "$CXX" -std=c++17 "-I$repository/alg" -Wall -Werror -c "$@"; }
link() { "$CXX" "$@" -o host; }

# Runs a command that has to fail with the given text in its messages.
fails_with() {
    local text=$1
    shift
    ! "$@" > messages.txt 2>&1 || fail "no error from: $*"
    grep -qF -- "$text" messages.txt || { cat messages.txt; fail "no such message: $text"; }
}

# ---- An undefined reference -------------------------------------------------

cat > main.cpp << 'END'
extern "C" bool touchFile(const char* path);
int main() { return touchFile("run/file") ? 0 : 1; }
END
compile main.cpp
block_of docs/porting.md cpp 1 > wrong.cpp
block_of docs/porting.md cpp 2 > right.cpp
error=$(block_of docs/porting.md text)
[ -n "$error" ] || fail "docs/porting.md shows no error"
compile wrong.cpp right.cpp
fails_with "$error" link main.o wrong.o libmodule.a
link main.o right.o libmodule.a
./host || fail "the host with the header does not run"

sed 's/^int g_yra_debug.*/namespace own { & }/; /include/d' right.cpp > namespace.cpp
compile namespace.cpp
fails_with 'undefined reference to `g_yra_debug' link main.o namespace.o libmodule.a
sed 's/^int g_yra_debug/const &/; /include/d; s/^void/extern "C" &/' right.cpp > constant.cpp
compile -Wno-unused constant.cpp
fails_with 'undefined reference to `g_yra_debug' link main.o constant.o libmodule.a

"$AR" rcs liblog.a right.o
fails_with "$error" link main.o liblog.a libmodule.a
link main.o libmodule.a liblog.a

# ---- A plugin with the static library ---------------------------------------

cat > plugin.cpp << 'END'
#include "dataInterface.h"
extern "C" bool plugin() { return touchFile("run/plugin"); }
END
compile -fPIC plugin.cpp right.cpp
"$CXX" -shared plugin.o right.o libmodule.a -o plugin.so
cat > loader.c << 'END'
#include <dlfcn.h>
#include <stdio.h>
int main(int argc, char** argv)
{
    void* library = dlopen(argc > 1 ? argv[1] : "", RTLD_NOW);
    _Bool (*function)(const char*) = NULL;
    if (library != NULL)
        *(void**)&function = dlsym(library, argc > 2 ? argv[2] : "");
    if (function != NULL)
        return function("run/loaded") ? 0 : 1;
    fprintf(stderr, "%s\n", dlerror());
    return 2;
}
END
"$CC" -c loader.c
"$CC" loader.o -o loader -ldl
./loader plugin.so plugin || fail "the plugin does not run"

# Its own log and level, although the program exports others.
cat > own.cpp << 'END'
#include "dataInterface.h"
#include <stdio.h>
int g_yra_debug = 6;
void libzo_log(const char*, ...) { puts("the plugin's log"); }
extern "C" bool plugin() { return dataLineCounter("run/missing") == 0; }
END
compile -fPIC own.cpp
"$CXX" -shared -Wl,-Bsymbolic own.o libmodule.a -o own.so
"$CXX" -rdynamic loader.o right.o -o exporting -ldl
[ "$(./exporting own.so plugin)" = "the plugin's log" ] || fail "the plugin uses the log of the program"

# ---- The shared library -----------------------------------------------------

compile -fvisibility=hidden right.cpp
fails_with 'hidden symbol `' link main.o right.o libmodule.so
{
    block_of docs/porting.md c
    sed '/include/d' right.cpp
} > visible.cpp
compile -fvisibility=hidden visible.cpp
link main.o visible.o libmodule.so
./host || fail "the host with visible definitions does not run"

compile right.cpp
fails_with 'undefined symbol: ' ./loader libmodule.so touchFile
"$CXX" loader.o right.o -o loader -ldl
fails_with 'undefined symbol: ' ./loader libmodule.so touchFile
"$CXX" -rdynamic loader.o right.o -o loader -ldl
./loader libmodule.so touchFile || fail "a program with -rdynamic does not load the library"
[ "$(cd run && echo *)" = 'file loaded plugin' ] || fail "the hosts made $(cd run && echo *)"
