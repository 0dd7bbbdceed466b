/* SPDX-License-Identifier: Apache-2.0 */
/* Where results and messages go: standard output, a pager, a file that appears whole or not at all. */
#ifndef ALGDATA_OUTPUT_H
#define ALGDATA_OUTPUT_H

#include <string>
#include <string_view>
#include <sys/types.h>

#include "commandline/options.h"

namespace algdata
{

/* A file that is removed on the way out, by a signal or otherwise. */
class TemporaryFile
{
  public:
    /* In the directory of `beside`, or in the one for temporary files where that is empty. */
    explicit TemporaryFile(const std::string& beside = "");
    ~TemporaryFile();
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    int descriptor() const { return fd; }
    const std::string& path() const { return name; }

    /* Gives it its final name; from then on it stays. */
    void renameTo(const std::string& target);

  private:
    std::string name;
    int fd = -1;
    int slot = -1;
};

/* Removes what is unfinished when the user interrupts. */
void watchSignals();

class Output
{
  public:
    explicit Output(const Options& options, bool throughPager = false);
    explicit Output(std::string& into); /* collects the text instead */
    ~Output();
    Output(const Output&) = delete;
    Output& operator=(const Output&) = delete;

    void put(std::string_view text)
    {
        buffer.append(text.data(), text.size());
        if (buffer.size() >= flushAt)
            flush();
    }
    void put(char c) { buffer.push_back(c); }

    /* Finishes the file, or waits for the pager. Throws OutputFailure when something could not be written. */
    void close();

    /* Escape sequences where colours are wanted, nothing otherwise. */
    const char* bold() const { return colors ? "\033[1m" : ""; }
    const char* red() const { return colors ? "\033[1;31m" : ""; }
    const char* yellow() const { return colors ? "\033[1;33m" : ""; }
    const char* green() const { return colors ? "\033[32m" : ""; }
    const char* dim() const { return colors ? "\033[2m" : ""; }
    const char* plain() const { return colors ? "\033[0m" : ""; }

  private:
    void flush();
    void startPager();

    static constexpr size_t flushAt = size_t(1) << 17;
    std::string buffer;
    std::string* sink = nullptr;
    std::string target;
    TemporaryFile* unfinished = nullptr;
    int fd = 1;
    pid_t pager = -1;
    bool colors = false;
};

/* "algdata: text" on standard error. The text may hold names and values as the user gave them. */
void message(const std::string& text);

} // namespace algdata

#endif
