/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Runs inputs through the targets without libFuzzer, with any compiler:
 *
 *     fuzz_replay DIRECTORY...
 *
 * Each DIRECTORY contains one directory per target, named after it, with the inputs.
 * Every input runs unchanged, then without its last byte, without its last two bytes
 * and so on. The last bytes are the choices, so each run makes different choices.
 */
#include "fuzzing.h"

#include <dirent.h>
#include <stdio.h>

enum { MAX_BYTES = 1 << 20, MAX_CUT = 16 };

static size_t readInput(const char* path, uint8_t* bytes)
{
    FILE* fp = fopen(path, "rb");
    FUZZ_EXPECT(fp != nullptr);
    const size_t size = fread(bytes, 1, MAX_BYTES, fp);
    fclose(fp);
    return size;
}

static int replayInput(const fuzz::Target* target, const char* path)
{
    static uint8_t bytes[MAX_BYTES];
    const size_t size = readInput(path, bytes);
    int runs = 0;
    for (size_t cut = 0; cut <= MAX_CUT && cut <= size; ++cut) {
        /* A heap copy, so that the address sanitizer finds a read past its end. */
        uint8_t* copy = static_cast<uint8_t*>(malloc(size - cut + 1));
        memcpy(copy, bytes, size - cut);
        fuzz::Input in(copy, size - cut);
        target->run(in);
        free(copy);
        ++runs;
    }
    return runs;
}

static int replayTarget(const fuzz::Target* target, const char* root)
{
    char path[4096];
    snprintf(path, sizeof path, "%s/%s", root, target->name);
    DIR* directory = opendir(path);
    if (directory == nullptr)
        return 0; /* no inputs for this target */
    int runs = 0;
    for (const dirent* entry; (entry = readdir(directory)) != nullptr;) {
        if (entry->d_name[0] == '.')
            continue;
        snprintf(path, sizeof path, "%s/%s/%s", root, target->name, entry->d_name);
        fprintf(stderr, "%s\n", path); /* if a run aborts, the last path printed is its input */
        runs += replayInput(target, path);
    }
    closedir(directory);
    return runs;
}

int main(int argc, char** argv)
{
    int runs = 0;
    int count = 0;
    for (const fuzz::Target* target = fuzz::targets(); target != nullptr; target = target->next) {
        ++count;
        for (int i = 1; i < argc; ++i)
            runs += replayTarget(target, argv[i]);
    }
    printf("%d runs, %d targets\n", runs, count);
    return runs > 0 && count > 0 ? 0 : 1;
}
