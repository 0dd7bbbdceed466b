/* SPDX-License-Identifier: Apache-2.0 */
/* A directory of small files for fuzz targets, made once and removed when the program exits. */
#ifndef FUZZ_SAMPLE_TREE_H
#define FUZZ_SAMPLE_TREE_H

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>
#include <utility>
#include <vector>

class SampleTree
{
  public:
    using Files = std::vector<std::pair<std::string, std::string>>; /* names with their content */

    explicit SampleTree(const Files& files)
    {
        for (const auto& [name, content] : files) {
            const std::filesystem::path path = std::filesystem::path(root) / name;
            std::filesystem::create_directories(path.parent_path());
            std::ofstream(path, std::ios::binary) << content;
        }
    }
    ~SampleTree() { std::filesystem::remove_all(root); }
    SampleTree(const SampleTree&) = delete;
    SampleTree& operator=(const SampleTree&) = delete;

    const std::string& path() const { return root; }

  private:
    static std::string newDirectory()
    {
        std::string name = (std::filesystem::temp_directory_path() / "fuzz.XXXXXX").string();
        if (mkdtemp(name.data()) == nullptr)
            abort();
        return name;
    }

    const std::string root = newDirectory();
};

/* A tar archive of files. */
inline std::string tarOf(const SampleTree::Files& files)
{
    constexpr size_t block = 512;
    std::string all;
    for (const auto& [name, content] : files) {
        char header[block] = {};
        snprintf(header, 100, "%s", name.c_str());
        snprintf(header + 100, 8, "%07o", 0644U);
        snprintf(header + 124, 12, "%011zo", content.size());
        snprintf(header + 136, 12, "%011o", 0U);
        memcpy(header + 148,
               "        0ustar\0"
               "00",
               17);
        unsigned sum = 0;
        for (const char c : header)
            sum += static_cast<unsigned char>(c);
        snprintf(header + 148, 8, "%06o", sum);
        all.append(header, block).append(content).append((block - content.size() % block) % block, '\0');
    }
    return all.append(2 * block, '\0');
}

#endif
