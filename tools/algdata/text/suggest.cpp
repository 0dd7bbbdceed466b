/* SPDX-License-Identifier: Apache-2.0 */
#include "text/suggest.h"

#include <algorithm>

#include "text/wording.h"

namespace algdata
{

namespace
{

/* The edit distance: insertions, removals, replacements and swaps of neighbours that turn a into b. */
size_t distance(const std::string& a, const std::string& b)
{
    std::vector<std::vector<size_t>> least(a.size() + 1, std::vector<size_t>(b.size() + 1));
    for (size_t i = 0; i <= a.size(); ++i) {
        for (size_t j = 0; j <= b.size(); ++j) {
            if (i == 0 || j == 0) {
                least[i][j] = i + j;
                continue;
            }
            const size_t replaced = least[i - 1][j - 1] + (a[i - 1] == b[j - 1] ? 0 : 1);
            least[i][j] = std::min({least[i - 1][j] + 1, least[i][j - 1] + 1, replaced});
            if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1])
                least[i][j] = std::min(least[i][j], least[i - 2][j - 2] + 1);
        }
    }
    return least[a.size()][b.size()];
}

/* 0 if the choice begins with the word, 1 if it contains the word, otherwise their edit distance. */
size_t distanceTo(const std::string& choice, const std::string& word)
{
    constexpr size_t minPart = 3; /* shorter parts occur in too many choices */
    const size_t part = word.size() >= minPart ? choice.find(word) : std::string::npos;
    return part == 0 ? 0 : part != std::string::npos ? 1 : distance(word, choice);
}

} // namespace

std::string didYouMean(const std::string& word, const std::vector<std::string>& choices)
{
    constexpr size_t maxLength = 64; /* a longer word is no typing error, and comparing it takes long */
    const std::string lower = lowered(word.substr(0, maxLength));
    const std::string* nearest = nullptr;
    size_t limit = std::max<size_t>((lower.size() + 1) / 3, 1) + 1;
    for (const std::string& choice : choices) {
        const size_t away = distanceTo(lowered(choice), lower);
        if (away < limit) {
            limit = away;
            nearest = &choice;
        }
    }
    return nearest == nullptr ? "" : "; did you mean " + *nearest + "?";
}

} // namespace algdata
