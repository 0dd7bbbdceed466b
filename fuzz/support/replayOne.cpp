/* SPDX-License-Identifier: Apache-2.0 */
/* Runs a target of libFuzzer on the files of directories, with any compiler: PROGRAM DIRECTORY... */
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

int main(int argc, char** argv)
{
    int runs = 0;
    for (int i = 1; i < argc; ++i) {
        if (!std::filesystem::is_directory(argv[i]))
            continue; /* no findings */
        for (const auto& entry : std::filesystem::directory_iterator(argv[i])) {
            /* If the run aborts, the last path is that of its input. */
            fprintf(stderr, "%s\n", entry.path().c_str());
            std::ifstream file(entry.path(), std::ios::binary);
            const std::vector<uint8_t> bytes(std::istreambuf_iterator<char>(file), {});
            LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
            ++runs;
        }
    }
    printf("%d runs\n", runs);
    return runs > 0 ? 0 : 1;
}
