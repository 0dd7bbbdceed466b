/* SPDX-License-Identifier: Apache-2.0 */
#include "checking/baseline.h"

#include <algorithm>
#include <filesystem>

#include <fmt/format.h>

#include "output/output.h"
#include "reading/source.h"
#include "records/records.h"
#include "text/hash.h"
#include "text/wording.h"

namespace algdata
{

namespace
{

constexpr std::string_view heading = "# algdata baseline 1";

/* Removes the numbers after the word "line". */
std::string withoutLines(std::string_view text)
{
    constexpr std::string_view word = "line ";
    std::string kept;
    while (!text.empty()) {
        const size_t at = text.find(word);
        const size_t end = at == std::string_view::npos ? text.size() : at + word.size();
        kept += text.substr(0, end);
        text.remove_prefix(end);
        while (at != std::string_view::npos && !text.empty() && isDigit(text[0]))
            text.remove_prefix(1);
    }
    return kept;
}

[[noreturn]] void refuse(const std::string& path, size_t line, const char* expected)
{
    throw Failure(fmt::format("{}:{}: not a baseline of `algdata`, expected {}", path, line, expected));
}

bool isFingerprint(Token text)
{
    return text.size() == 32 && std::all_of(text.begin(), text.end(), isHexDigit);
}

/* Whether the file has other content than a baseline, which must not be lost. */
bool isOtherFile(const std::string& path)
{
    std::error_code error;
    if (!std::filesystem::is_regular_file(path, error) || std::filesystem::file_size(path, error) == 0)
        return false;
    Source source;
    readSource(path, source);
    return source.bytes.compare(0, heading.size(), heading) != 0;
}

} // namespace

std::string fingerprintOf(Rule rule, const std::string& file, const std::string& field, std::string_view text)
{
    std::string all = textOf(rule).name;
    all += '\0' + std::filesystem::path(file).lexically_normal().string();
    all += '\0' + field;
    all += '\0' + withoutLines(text);
    const Hash hash = hashOf(all);
    return fmt::format("{:016x}{:016x}", hash.high, hash.low);
}

void Baseline::read(const std::string& path)
{
    Source source;
    readSource(path, source);
    Lines lines(source.bytes);
    Line line;
    if (!lines.next(line) || line.text != heading)
        refuse(path, 1, "its heading");
    std::vector<Token> tokens;
    while (lines.next(line)) {
        split(line.text, tokens, 3);
        const std::optional<Number> times = tokens.size() > 1 ? wholeNumber(tokens[1]) : std::nullopt;
        if (tokens.size() < 2 || !isFingerprint(tokens[0]) || !times || times->negative || times->huge)
            refuse(path, line.number, "a fingerprint and a number of findings");
        known[std::string(tokens[0])] += times->magnitude;
    }
}

void Baseline::add(const std::string& fingerprint, Rule rule, const std::string& file, size_t times)
{
    Entry& entry = found[fingerprint];
    entry = {entry.times + times, rule, file};
}

size_t Baseline::unknown(const std::string& fingerprint, size_t times)
{
    const auto at = known.find(fingerprint);
    if (at == known.end())
        return times;
    const size_t used = std::min(at->second, times);
    at->second -= used;
    return times - used;
}

size_t Baseline::write(const std::string& path) const
{
    if (isOtherFile(path))
        throw Failure(path + ": not overwritten, because it is not a baseline of `algdata`");
    Options options;
    options.output = path;
    Output out(options);
    out.put(fmt::format("{}\n", heading));
    size_t findings = 0;
    for (const auto& [fingerprint, entry] : found) {
        out.put(fmt::format("{} {} {} {}\n", fingerprint, entry.times, textOf(entry.rule).name,
                            printable(entry.file)));
        findings += entry.times;
    }
    out.close(AllWell);
    return findings;
}

} // namespace algdata
