/* SPDX-License-Identifier: Apache-2.0 */
/* `algdata watch`: shows each change of the record files in a directory, until ^C. */
#include <algorithm>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstring>
#include <ctime>
#include <map>
#include <poll.h>
#include <set>
#include <sys/stat.h>
#include <unistd.h>

#include <fmt/format.h>

#include "commands/commands.h"
#include "output/interruption.h"
#include "output/json.h"
#include "printing/differenceText.h"
#include "query/fields.h"
#include "reading/damage.h"
#include "reading/detect.h"
#include "reading/treeWatch.h"
#include "text/wording.h"

namespace algdata
{

namespace
{

using std::chrono::milliseconds;
using std::chrono::seconds;
using Clock = std::chrono::steady_clock;

/* Changes that follow each other faster are shown as one, such as a removal before a rename. */
constexpr milliseconds afterClose(100);

/* A file that stays open is read after this time without a write. */
constexpr milliseconds afterWrite(1000);

/* As long is an open file waited for that is empty or ends within a line, or that is written without a pause.
 */
constexpr milliseconds longest(10000);

/* The limit for all files together, in bytes: their last content is kept to compare it with the next. */
constexpr size_t largestTree = size_t(1) << 30;

/* ---- What was shown ------------------------------------------------------ */

/* Prints the changes, one line each. */
class ChangeLines
{
  public:
    ChangeLines(Output& output, bool asJson) : out(output), json(asJson) {}

    /* The kind is null for an empty file. */
    void startFile(const std::string& name, const Kind* ofFile, std::time_t at);
    void put(const Difference& difference);

    /* "12 added, 0 removed, 3 changed in 2 files" */
    std::string summary() const;

  private:
    void putText(const Difference& difference);
    void putJson(const Difference& difference);

    Output& out;
    const bool json;
    std::string file;
    const Kind* kind = nullptr;
    std::time_t time = 0;
    std::map<std::string, size_t> counts; /* by what has happened */
    std::set<std::string> files;
};

void ChangeLines::startFile(const std::string& name, const Kind* ofFile, std::time_t at)
{
    file = name;
    kind = ofFile;
    time = at;
}

/* "2026-11-22 14:03:07" in local time, or "2026-11-22T13:03:07Z". */
std::string timeText(std::time_t time, bool universal)
{
    std::tm parts = {};
    char text[32] = "";
    if ((universal ? gmtime_r(&time, &parts) : localtime_r(&time, &parts)) != nullptr)
        std::strftime(text, sizeof text, universal ? "%Y-%m-%dT%H:%M:%SZ" : "%Y-%m-%d %H:%M:%S", &parts);
    return text;
}

void ChangeLines::put(const Difference& difference)
{
    ++counts[difference.what];
    files.insert(file);
    const Interruptible whileWriting;
    if (json)
        putJson(difference);
    else
        putText(difference);
}

void ChangeLines::putText(const Difference& difference)
{
    const std::string what = difference.key.empty() ? difference.what : differenceText(difference, out);
    out.put(fmt::format("{}{}{} {}{}{}: {}\n", out.dim(), timeText(time, false), out.plain(), out.bold(),
                        printable(file), out.plain(), what));
}

/* A value is never an empty text: only a record that is not there has none. */
std::string valueText(const std::string& value)
{
    return value.empty() ? "null" : jsonText(value);
}

void ChangeLines::putJson(const Difference& difference)
{
    out.put(fmt::format(R"({{"time":"{}","kind":"{}","file":{},"change":"{}","key":{},"fields":[)",
                        timeText(time, true), kind == nullptr ? "" : kind->name, jsonText(file),
                        difference.what, jsonText(difference.key)));
    const char* separator = "";
    for (const Difference::Values& values : difference.fields) {
        out.put(fmt::format(R"({}{{"field":{},"old":{},"new":{}}})", separator, jsonText(values.field),
                            valueText(values.before), valueText(values.after)));
        separator = ",";
    }
    out.put("]}\n");
}

std::string ChangeLines::summary() const
{
    const auto count = [this](const char* what) {
        const auto at = counts.find(what);
        return at == counts.end() ? 0 : at->second;
    };
    return fmt::format("{} added, {} removed, {} changed in {}", count("added"), count("removed"),
                       count("changed"), plural(files.size(), "file"));
}

/* ---- Files that wait ----------------------------------------------------- */

/* A file that has changed since it was shown. */
struct Waiting {
    bool open = false; /* it may still be open for writing */
    Clock::time_point first;
    Clock::time_point last;
    Clock::time_point due;
    std::time_t time = 0; /* of the last change */
};

void note(Waiting& file, bool isNew, bool open, Clock::time_point now)
{
    if (isNew)
        file.first = now;
    file.open = open;
    file.last = now;
    file.time = std::time(nullptr);
    const milliseconds pause = open ? afterWrite : afterClose;
    file.due = std::max(now, std::min(now + pause, file.first + longest));
}

/* ---- The command --------------------------------------------------------- */

/* The content of a record file when it was last shown. */
struct Shown {
    std::string bytes;
    const Kind* kind = nullptr; /* null for an empty file */
};

/* Ends the command. */
struct TooLarge : std::runtime_error {
    using std::runtime_error::runtime_error;
};

class Watcher
{
  public:
    Watcher(Output& ofChanges, const Options& commonOptions);

    /* Returns after ^C, or if the directory is gone. */
    Status run();

  private:
    void start();
    void learn(const std::string& path);
    void readEvents();
    void handle(const TreeEvent& event);
    void markAll();
    void pause();
    void showDue(Clock::time_point now);
    void showComplete();
    void show(const std::string& path, const Waiting& how);
    void waitLonger(const std::string& path, const Waiting& how);
    void showGone(const std::string& path, std::time_t time);
    void showFile(Source& fresh, std::time_t time);
    bool recognize(Source& source);
    void compare(const Shown& old, const Source& fresh, std::time_t time);
    void keep(Shown& old, Source& fresh);
    void putFileLine(const char* what, const std::string& path, const Kind* kind, std::time_t time);
    void fail(const std::string& why);
    std::string nameOf(const std::string& path) const
    {
        return path.substr(root == "/" ? 1 : root.size() + 1);
    }
    bool isOutput(const struct stat& file) const;

    Output& out;
    const Options& options;
    Filter filter;
    const std::string root;
    TreeWatch tree;
    Interruption interruption;
    OtherFiles others;
    ChangeLines lines;
    struct stat output = {};
    std::map<std::string, Shown> files;
    std::map<std::string, Waiting> waiting;
    size_t kept = 0; /* bytes of all files */
    bool rootGone = false;
    Status status = AllWell;
};

bool wantsJson(const Options& options)
{
    return options.format == Format::Ndjson || (options.format == Format::Text && isatty(STDOUT_FILENO) == 0);
}

Watcher::Watcher(Output& ofChanges, const Options& commonOptions)
    : out(ofChanges), options(commonOptions), filter(options), root(withoutSlash(commonOptions.paths[0])),
      tree(root), others(commonOptions.kind), lines(ofChanges, wantsJson(commonOptions))
{
    fstat(STDOUT_FILENO, &output);
}

void Watcher::fail(const std::string& why)
{
    message(why);
    status = Unusable;
}

bool Watcher::isOutput(const struct stat& file) const
{
    return S_ISREG(output.st_mode) && file.st_dev == output.st_dev && file.st_ino == output.st_ino;
}

/* ---- The beginning ------------------------------------------------------- */

/* Keeps the content of a file without showing it. */
void Watcher::learn(const std::string& path)
{
    Source source;
    struct stat file;
    if (stat(path.c_str(), &file) != 0 || isOutput(file))
        return;
    try {
        readSource(path, source);
        if (!recognize(source))
            return others.add(path);
        keep(files[path], source);
    } catch (const Failure& failure) {
        fail(failure.what());
    }
}

void Watcher::start()
{
    tree.scan([this](const std::string& path) { learn(path); },
              [this](const std::string& path, const std::string& why) {
                  fail(fmt::format("cannot read {}: {}", path, why));
              });
    others.report();
    message(fmt::format("watching {}: {} in {}; ^C ends it", root, plural(files.size(), "record file"),
                        tree.directories() == 1 ? "1 directory"
                                                : fmt::format("{} directories", tree.directories())));
}

void Watcher::keep(Shown& old, Source& fresh)
{
    kept += fresh.bytes.size() - old.bytes.size();
    if (kept > largestTree)
        throw TooLarge(fmt::format("watch: the record files in {} have more than {} GiB, the limit", root,
                                   largestTree >> 30));
    old.bytes.swap(fresh.bytes);
    old.kind = fresh.kind;
}

/* ---- Events -------------------------------------------------------------- */

void Watcher::handle(const TreeEvent& event)
{
    const Clock::time_point now = Clock::now();
    const auto mark = [&](const std::string& path, bool open) {
        const auto [at, isNew] = waiting.try_emplace(path);
        note(at->second, isNew, open, now);
    };
    switch (event.what) {
    case TreeEvent::Written:
        return mark(event.path, true);
    case TreeEvent::Complete:
        return mark(event.path, false);
    case TreeEvent::DirectoryGone:
        for (auto at = files.lower_bound(event.path + "/");
             at != files.end() && at->first.compare(0, event.path.size() + 1, event.path + "/") == 0; ++at)
            mark(at->first, false);
        return;
    case TreeEvent::Lost:
        message("the system lost changes because there were too many; reading all files again");
        return markAll();
    case TreeEvent::RootGone:
        rootGone = true;
    }
}

/* Marks all files that are there or were there as changed. */
void Watcher::markAll()
{
    for (const auto& [path, shown] : files)
        handle({TreeEvent::Written, path});
    tree.scan(
        [this](const std::string& path) {
            handle({TreeEvent::Written, path});
        },
        [this](const std::string& path, const std::string& why) {
            fail(fmt::format("cannot read {}: {}", path, why));
        });
}

/* A directory that has vanished meanwhile is no failure: its files are reported as removed. */
void Watcher::readEvents()
{
    tree.read([this](const TreeEvent& event) { handle(event); },
              [this](const std::string& path, const std::string& why) {
                  if (access(path.c_str(), F_OK) == 0)
                      fail(fmt::format("cannot read {}: {}", path, why));
              });
}

/* Waits for an event, for the next file that is due, for ^C, or until nobody reads the output. */
void Watcher::pause()
{
    int timeout = -1;
    const Clock::time_point now = Clock::now();
    for (const auto& [path, file] : waiting) {
        const auto rest = std::chrono::duration_cast<milliseconds>(file.due - now).count() + 1;
        const int left = static_cast<int>(std::max<int64_t>(rest, 0));
        timeout = timeout < 0 ? left : std::min(timeout, left);
    }
    pollfd polled[] = {
        {tree.descriptor(), POLLIN, 0}, {interruption.descriptor(), POLLIN, 0}, {STDOUT_FILENO, 0, 0}};
    if (poll(polled, std::size(polled), timeout) < 0 && errno != EINTR)
        throw Failure(std::string("watch: cannot wait: ") + std::strerror(errno));
    if ((polled[2].revents & (POLLERR | POLLHUP)) != 0) {
        raise(SIGPIPE); /* as the next write would; it returns if the signal is ignored */
        throw OutputFailure(std::string("cannot write standard output: ") + std::strerror(EPIPE));
    }
}

/* ---- One file ------------------------------------------------------------ */

/* Whether the last write to a file may be missing: it is empty or ends within a line. */
bool looksUnfinished(const std::string& bytes)
{
    return bytes.empty() || bytes.back() != '\n';
}

void Watcher::waitLonger(const std::string& path, const Waiting& how)
{
    Waiting& again = waiting[path] = how;
    again.due = how.last + longest;
}

void Watcher::show(const std::string& path, const Waiting& how)
{
    struct stat file;
    if (stat(path.c_str(), &file) != 0 || !S_ISREG(file.st_mode))
        return showGone(path, how.time);
    if (isOutput(file))
        return;
    Source fresh;
    std::string failure;
    try {
        readSource(path, fresh);
    } catch (const Failure& failed) {
        failure = failed.what();
    }
    readEvents();
    const auto again = waiting.find(path);
    if (again != waiting.end()) /* it has changed since */
        again->second.first = how.first;
    else if (!failure.empty())
        fail(failure);
    else if (how.open && looksUnfinished(fresh.bytes) && Clock::now() < how.last + longest)
        waitLonger(path, how);
    else
        showFile(fresh, how.time);
}

void Watcher::putFileLine(const char* what, const std::string& path, const Kind* kind, std::time_t time)
{
    lines.startFile(nameOf(path), kind, time);
    lines.put({what, "", {}});
}

void Watcher::showGone(const std::string& path, std::time_t time)
{
    const auto at = files.find(path);
    if (at == files.end())
        return;
    putFileLine("file removed", path, at->second.kind, time);
    kept -= at->second.bytes.size();
    files.erase(at);
}

/*
 * Sets the kind of a file. A file that can be of several kinds keeps the one that it had. Returns false if
 * it is no record file. Throws Failure if it cannot be read as one.
 */
bool Watcher::recognize(Source& source)
{
    source.named = false;
    const Detection content = detectKind(source.bytes, options.kind);
    const bool wanted = others.wants(source, content);
    const auto at = files.find(source.name);
    const Kind* before = at == files.end() ? nullptr : at->second.kind;
    const bool fits = std::find(content.fits.begin(), content.fits.end(), before) != content.fits.end();
    source.kind = content.kind == nullptr && fits ? before : content.kind;
    if (source.kind == nullptr && !content.hasNoRecords() && (wanted || at != files.end()))
        throw Failure(source.name + ": " + content.reason());
    return wanted;
}

/* If it fails, the old content stays for the next comparison. */
void Watcher::showFile(Source& fresh, std::time_t time)
{
    try {
        if (!recognize(fresh))
            return;
        const auto at = files.find(fresh.name);
        const Kind* before = at == files.end() ? nullptr : at->second.kind;
        if (before != nullptr && fresh.kind != nullptr && before != fresh.kind)
            showGone(fresh.name, time);
        if (files.find(fresh.name) == files.end())
            putFileLine("file added", fresh.name, fresh.kind, time);
        Shown& old = files[fresh.name];
        compare(old, fresh, time);
        keep(old, fresh);
    } catch (const Failure& failure) {
        fail(failure.what());
    }
}

void Watcher::compare(const Shown& old, const Source& fresh, std::time_t time)
{
    const Kind* kind = fresh.kind != nullptr ? fresh.kind : old.kind;
    if (kind == nullptr || fresh.bytes == old.bytes)
        return;
    const Source before = {fresh.name, old.bytes, kind, false};
    const Source after = {fresh.name, fresh.bytes, kind, false};
    View oldView(before, options.loaded);
    View newView(after, options.loaded);
    const Changes changes = changesBetween(*kind, oldView, newView);
    if (changes.wrongLinesAfter != 0 && changes.wrongLinesAfter != changes.wrongLinesBefore) {
        message(wrongLinesText(fresh.name, changes.wrongLinesAfter));
        status = worse(status, Findings);
    }
    DifferenceTexts texts(before, after, filter, oldView, newView, FieldsOfOneSide::All);
    lines.startFile(nameOf(fresh.name), kind, time);
    texts.each(changes, [this](const Difference& difference) { lines.put(difference); });
}

/* ---- The loop ------------------------------------------------------------ */

/* In the order of the changes. */
void Watcher::showDue(Clock::time_point now)
{
    std::multimap<Clock::time_point, std::string> due;
    for (const auto& [path, file] : waiting)
        if (file.due <= now)
            due.emplace(file.last, path);
    for (const auto& [time, path] : due) {
        const auto at = waiting.find(path);
        if (at == waiting.end())
            continue;
        const Waiting how = at->second;
        waiting.erase(at);
        show(path, how);
        const Interruptible whileWriting;
        out.flush();
    }
}

/* Shows at once what is not written any more. */
void Watcher::showComplete()
{
    readEvents();
    for (auto& [path, file] : waiting)
        file.due = file.open ? Clock::time_point::max() : Clock::now();
    showDue(Clock::now());
}

Status Watcher::run()
{
    start();
    while (!Interruption::happened() && !rootGone) {
        pause();
        readEvents();
        rootGone = rootGone || (!waiting.empty() && tree.rootHasMoved());
        if (!rootGone)
            showDue(Clock::now());
    }
    if (rootGone)
        fail(fmt::format("{} was removed or renamed", root));
    else
        showComplete();
    message(lines.summary());
    return status;
}

} // namespace

Status runWatch(Options options)
{
    requireFields(options);
    Output out(options);
    Watcher watcher(out, options);
    const Status status = watcher.run();
    out.close(status);
    return status;
}

} // namespace algdata
