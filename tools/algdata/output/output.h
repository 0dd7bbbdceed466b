/* SPDX-License-Identifier: Apache-2.0 */
/* Results go to standard output, a pager or a file; messages go to standard error. */
#ifndef ALGDATA_OUTPUT_H
#define ALGDATA_OUTPUT_H

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "options/options.h"
#include "output/outputFile.h"
#include "output/pager.h"

namespace algdata
{

class Output
{
  public:
    explicit Output(const Options& options, bool throughPager = false);
    explicit Output(std::string& into); /* appends to a string instead */
    ~Output();
    Output(const Output&) = delete;
    Output& operator=(const Output&) = delete;

    void put(std::string_view text)
    {
        if (text.size() > buffer.size() - used)
            makeRoom(text.size());
        text.copy(buffer.data() + used, text.size()); /* not memcpy(): an empty text may be null */
        used += text.size();
    }
    void put(char c) { put(std::string_view(&c, 1)); }

    /*
     * Standard output gets nothing before flush() or close(), so that a command that fails prints nothing.
     * What does not fit the buffer waits in a temporary file.
     */
    void hold() { holding = file == nullptr || file->isDirect(); }

    /* Throws OutputFailure if something could not be written. */
    void flush();

    /*
     * Finishes the file, or waits for the pager. If the status is Unusable, an existing file keeps its
     * content. Throws OutputFailure if something could not be written.
     */
    void close(Status status);

    /* Whether a person reads it at once, through a pager or not. */
    bool isForTerminal() const;

    /* Escape sequences; empty without colours. */
    const char* bold() const { return colors ? "\033[1m" : ""; }
    const char* red() const { return colors ? "\033[1;31m" : ""; }
    const char* yellow() const { return colors ? "\033[1;33m" : ""; }
    const char* green() const { return colors ? "\033[32m" : ""; }
    const char* dim() const { return colors ? "\033[2m" : ""; }
    const char* plain() const { return colors ? "\033[0m" : ""; }

  private:
    void makeRoom(size_t size);
    void writeBuffer();
    void writeHeld();

    std::vector<char> buffer = std::vector<char>(size_t(1) << 17);
    size_t used = 0;
    std::string* sink = nullptr;
    std::string target;
    std::unique_ptr<OutputFile> file;
    int fd = 1;
    bool holding = false;
    std::unique_ptr<TemporaryFile> held; /* what did not fit the buffer; null if nothing */
    std::unique_ptr<Pager> pager;
    bool colors = false;
};

/*
 * Prints "algdata: text" to standard error, with unprintable characters escaped. The
 * SQLite extension has a function of its own instead, which prints nothing.
 */
void message(const std::string& text);

} // namespace algdata

#endif
