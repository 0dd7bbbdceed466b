/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Runs inputs through the targets without libFuzzer, with any compiler:
 *
 *     fuzz_replay DIRECTORY...
 *
 * Each DIRECTORY has one directory per target, named like it, with the inputs
 * in it. Every input is run whole, and once more without each of its last
 * bytes, since those are the choices.
 */
#include "fuzzing.h"

#include <dirent.h>
#include <stdio.h>

enum { MOST_BYTES = 1 << 20, CUTS = 16 };

static size_t readInput(const char* path, uint8_t* bytes)
{
    FILE* fp = fopen(path, "rb");
    FUZZ_EXPECT(fp != nullptr);
    const size_t size = fread(bytes, 1, MOST_BYTES, fp);
    fclose(fp);
    return size;
}

static int replayInput(const fuzz::Target* target, const char* path)
{
    static uint8_t bytes[MOST_BYTES];
    const size_t size = readInput(path, bytes);
    int runs = 0;
    for (size_t cut = 0; cut <= CUTS && cut <= size; ++cut) {
        /* A copy of its own size, so that a read past its end can be seen. */
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
        return 0; /* no input for this target here */
    int runs = 0;
    for (const dirent* entry; (entry = readdir(directory)) != nullptr;) {
        if (entry->d_name[0] == '.')
            continue;
        snprintf(path, sizeof path, "%s/%s/%s", root, target->name, entry->d_name);
        fprintf(stderr, "%s\n", path); /* the last one named is the one that ended the run */
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
