/* SPDX-License-Identifier: Apache-2.0 */
#ifndef _GNU_SOURCE
#define _GNU_SOURCE /* fopencookie */
#endif
#define _FILE_OFFSET_BITS 64 /* the host's directories may have inodes that 32 bits cannot hold */
#include "testing.h"

#include <dirent.h>
#include <errno.h>
#include <fcntl.h>
#include <stdarg.h>
#include <stdint.h>
#include <sys/stat.h>
#include <unistd.h>

/* ---- Host --------------------------------------------------------------- */

int g_yra_debug = 6;

/* Ends the run: the tests themselves are wrong. */
[[noreturn]] static void giveUp(const char* why)
{
    fprintf(stderr, "test support: %s\n", why);
    abort();
}

static const char prefix[] = "libzo: [%s:%d]: ";
static char transcript[1 << 20];
static size_t transcriptLength;
static int transcriptCount;

static void addToTranscript(const char* format, va_list args) __attribute__((format(printf, 1, 0)));
static void addToTranscript(const char* format, va_list args)
{
    const size_t room = sizeof transcript - transcriptLength;
    const int length = vsnprintf(transcript + transcriptLength, room, format, args);
    if (length > 0)
        transcriptLength += static_cast<size_t>(length) < room ? static_cast<size_t>(length) : room - 1;
}

static void addText(const char* format, ...) __attribute__((format(printf, 1, 2)));
static void addText(const char* format, ...)
{
    va_list args;
    va_start(args, format);
    addToTranscript(format, args);
    va_end(args);
}

static int heldAtLastMessage;

void libzo_log(const char* format, ...)
{
    ++transcriptCount;
    heldAtLastMessage = test::heldArrays();
    if (strncmp(format, prefix, sizeof prefix - 1) != 0) {
        addText("(no prefix) %s|", format);
        return;
    }
    va_list args;
    va_start(args, format);
    const char* function = va_arg(args, const char*);
    const int line = va_arg(args, int);
    addText("libzo: [%s:%s]: ", function, line > 0 ? "#" : "(no line)");
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
    addToTranscript(format + sizeof prefix - 1, args);
#pragma GCC diagnostic pop
    addText("|");
    va_end(args);
}

void test::setLevel(int level)
{
    g_yra_debug = level;
}
const char* test::messages()
{
    return transcript;
}
int test::messageCount()
{
    return transcriptCount;
}

void test::clearMessages()
{
    transcript[0] = '\0';
    transcriptLength = 0;
    transcriptCount = 0;
}

/* Under the address sanitizer an allocation of an impossible size returns null, as it does without. */
extern "C" const char* __asan_default_options()
{
    return "allocator_may_return_null=1";
}

/* ---- Texts that live as long as the test -------------------------------- */

static void* kept[4096];
static size_t keptCount;

static char* keep(size_t size)
{
    if (keptCount == sizeof kept / sizeof kept[0])
        giveUp("too many texts in one test");
    void* text = malloc(size);
    if (text == nullptr)
        giveUp("no memory");
    kept[keptCount++] = text;
    return static_cast<char*>(text);
}

static void releaseKept()
{
    while (keptCount > 0)
        free(kept[--keptCount]);
}

/* ---- Files -------------------------------------------------------------- */

void test::writeFile(const char* path, const char* text)
{
    writeBytes(path, text, strlen(text));
}

void test::writeBytes(const char* path, const void* bytes, size_t size)
{
    const int fd = open(path, O_WRONLY | O_CREAT | O_TRUNC, 0666);
    if (fd < 0 || write(fd, bytes, size) != static_cast<ssize_t>(size) || close(fd) != 0) {
        perror(path);
        giveUp("a test file cannot be written");
    }
}

long test::fileSize(const char* path)
{
    struct stat status;
    return stat(path, &status) == 0 ? static_cast<long>(status.st_size) : -1;
}

long test::readBytes(const char* path, void* bytes, size_t room)
{
    const int fd = open(path, O_RDONLY);
    if (fd < 0)
        return -1;
    const ssize_t got = read(fd, bytes, room);
    close(fd);
    return static_cast<long>(got);
}

const char* test::fileText(const char* path)
{
    const long size = fileSize(path);
    const int fd = open(path, O_RDONLY);
    if (fd < 0 || size < 0)
        return "<missing>";
    char* text = keep(static_cast<size_t>(size) + 1);
    const ssize_t got = read(fd, text, static_cast<size_t>(size));
    close(fd);
    text[got > 0 ? got : 0] = '\0';
    return text;
}

int test::fileLines(const char* path)
{
    if (fileSize(path) < 0)
        return -1;
    int lines = 0;
    for (const char* at = fileText(path); (at = strchr(at, '\n')) != nullptr; ++at)
        ++lines;
    return lines;
}

const char* test::fileLine(const char* path, int index)
{
    const char* line = fileText(path);
    for (int i = 0; i < index; ++i) {
        const char* end = strchr(line, '\n');
        if (end == nullptr)
            return "<no such line>";
        line = end + 1;
    }
    if (line[0] == '\0')
        return "<no such line>";
    const size_t length = strcspn(line, "\n");
    char* text = keep(length + 1);
    memcpy(text, line, length);
    text[length] = '\0';
    return text;
}

/* ---- Faults ------------------------------------------------------------- */

struct Fault {
    int seen;   /* calls so far */
    int first;  /* the call that fails, 0 for none */
    bool after; /* whether those after it fail too */
};

static Fault faults[test::CALL_KINDS];
static long faultyBytesRead;
static int bufferSize = -1;
static char buffers[8][4096];
static int buffersUsed;
static int hookAt;
static void (*openHook)(const char* path);

/* Counts one call of a kind. Returns whether it must fail. */
static bool fails(test::Call call)
{
    Fault& fault = faults[call];
    ++fault.seen;
    return fault.first != 0 && (fault.after ? fault.seen >= fault.first : fault.seen == fault.first);
}

static void arm(test::Call call, int k, bool after)
{
    faults[call].first = faults[call].seen + k;
    faults[call].after = after;
}

void test::failNth(Call call, int k)
{
    arm(call, k, false);
}
void test::failFrom(Call call, int k)
{
    arm(call, k, true);
}

void test::failNothing()
{
    for (Fault& fault : faults)
        fault.first = 0;
}

void test::forgetCalls()
{
    memset(faults, 0, sizeof faults);
    openHook = nullptr;
}

int test::callCount(Call call)
{
    return faults[call].seen;
}
long test::bytesRead()
{
    return faultyBytesRead;
}
void test::streamBuffer(int size)
{
    bufferSize = size;
}

void test::beforeOpen(int k, void (*hook)(const char* path))
{
    hookAt = faults[OPEN].seen + k;
    openHook = hook;
}

/* ---- The C library's calls, as the module reaches them ------------------ */

static FILE* streams[64];
static int strayCloses; /* of streams that are not open */
static void* arrays[256];
static unsigned char* guards[256]; /* after the array of the same place, or null */
static bool guarding;
static int guardsBroken;

#if defined(__SANITIZE_ADDRESS__)
enum { GUARD_SIZE = 0 };
#else
enum { GUARD_SIZE = 256 };
#endif
enum { GUARD_BYTE = 0xA5 };

template <typename T, size_t n> static bool replaceIn(T* (&table)[n], const T* old, T* with)
{
    for (T*& place : table) {
        if (place == old) {
            place = with;
            return true;
        }
    }
    return false;
}

template <typename T, size_t n> static int countIn(T* const (&table)[n])
{
    int count = 0;
    for (const T* place : table)
        count += place != nullptr;
    return count;
}

/* Sets a guard zone after an array of `size` bytes, which has room for it. */
static void setGuard(void* array, size_t size)
{
    for (size_t i = 0; i < sizeof arrays / sizeof arrays[0]; ++i) {
        if (arrays[i] == array) {
            guards[i] = static_cast<unsigned char*>(array) + size;
            memset(guards[i], GUARD_BYTE, GUARD_SIZE);
        }
    }
}

/* Looks at the guard zone of an array that goes, and forgets it. */
static void checkGuard(const void* array)
{
    for (size_t i = 0; i < sizeof arrays / sizeof arrays[0]; ++i) {
        if (array == nullptr || arrays[i] != array || guards[i] == nullptr)
            continue;
        int intact = 0;
        while (intact < GUARD_SIZE && guards[i][intact] == GUARD_BYTE)
            ++intact;
        guardsBroken += intact < GUARD_SIZE;
        guards[i] = nullptr;
    }
}

static ssize_t cookieRead(void* cookie, char* bytes, size_t size)
{
    if (fails(test::READ)) {
        errno = EIO;
        return -1;
    }
    const size_t max = bufferSize > 0 ? static_cast<size_t>(bufferSize) : size;
    const ssize_t got = read(*static_cast<int*>(cookie), bytes, size < max ? size : max);
    faultyBytesRead += got > 0 ? static_cast<long>(got) : 0;
    return got;
}

/* What tells the C library that a write failed. */
#if defined(__GLIBC__)
enum { WRITE_FAILED = 0 };
#else
enum { WRITE_FAILED = -1 };
#endif

static ssize_t cookieWrite(void* cookie, const char* bytes, size_t size)
{
    if (size == 0) /* a C library's way to flush: no print */
        return 0;
    if (fails(test::WRITE)) {
        errno = ENOSPC;
        return WRITE_FAILED;
    }
    return write(*static_cast<int*>(cookie), bytes, size);
}

static int cookieClose(void* cookie)
{
    const int fd = *static_cast<int*>(cookie);
    free(cookie);
    return close(fd);
}

extern "C" int __real_setvbuf(FILE* stream, char* buffer, int mode, size_t size);

/* A stream whose reads and writes can be failed. */
static FILE* openFaulty(const char* path, const char* mode)
{
    const bool writing = mode[0] == 'w';
    const int fd = open(path, writing ? O_WRONLY | O_CREAT | O_TRUNC : O_RDONLY, 0666);
    if (fd < 0)
        return nullptr;
    int* cookie = static_cast<int*>(malloc(sizeof fd));
    if (cookie == nullptr)
        giveUp("no memory");
    *cookie = fd;
    cookie_io_functions_t calls = {};
    calls.read = cookieRead;
    calls.write = cookieWrite;
    calls.close = cookieClose;
    FILE* stream = fopencookie(cookie, mode, calls);
    if (stream != nullptr && writing)
        __real_setvbuf(stream, nullptr, _IONBF, 0);
    return stream;
}

extern "C" {
FILE* __real_fopen(const char* path, const char* mode);
int __real_fclose(FILE* stream);
void* __real_calloc(size_t count, size_t size);
void* __real_realloc(void* array, size_t size);
void __real_free(void* array);

FILE* __wrap_fopen(const char* path, const char* mode)
{
    const bool failing = fails(test::OPEN);
    if (openHook != nullptr && faults[test::OPEN].seen == hookAt)
        openHook(path);
    if (failing) {
        errno = EIO;
        return nullptr;
    }
    const bool faulty = faults[mode[0] == 'w' ? test::WRITE : test::READ].first != 0;
    FILE* stream = faulty ? openFaulty(path, mode) : __real_fopen(path, mode);
    if (stream == nullptr)
        return nullptr;
    if (bufferSize == 0)
        __real_setvbuf(stream, nullptr, _IONBF, 0);
    else if (bufferSize > 0)
        __real_setvbuf(stream, buffers[buffersUsed++ % 8], _IOFBF, static_cast<size_t>(bufferSize));
    if (!replaceIn<FILE>(streams, nullptr, stream))
        giveUp("too many open streams");
    return stream;
}

/* A stream whose buffer a test has chosen, or whose prints it fails one by one, keeps its buffer. */
int __wrap_setvbuf(FILE* stream, char* buffer, int mode, size_t size)
{
    const bool chosen = bufferSize >= 0 || (mode == _IOFBF && faults[test::WRITE].first != 0);
    return chosen ? 0 : __real_setvbuf(stream, buffer, mode, size);
}

int __wrap_fclose(FILE* stream)
{
    strayCloses += !replaceIn<FILE>(streams, stream, nullptr);
    const int result = __real_fclose(stream);
    return fails(test::CLOSE) ? EOF : result;
}

void* __wrap_calloc(size_t count, size_t size)
{
    const bool guarded = guarding && size > 0 && count <= (PTRDIFF_MAX - GUARD_SIZE) / size;
    /* Some C libraries return null for an array of no bytes. */
    void* array = fails(test::ALLOCATE) || count == 0 || size == 0 ? nullptr
                  : guarded ? __real_calloc(1, count * size + GUARD_SIZE)
                            : __real_calloc(count, size);
    if (array != nullptr && !replaceIn<void>(arrays, nullptr, array))
        giveUp("too many arrays");
    if (array != nullptr && guarded)
        setGuard(array, count * size);
    return array;
}

void* __wrap_realloc(void* array, size_t size)
{
    if (fails(test::GROW))
        return nullptr;
    checkGuard(array);
    const bool guarded = guarding && size <= PTRDIFF_MAX - GUARD_SIZE;
    void* grown = __real_realloc(array, guarded ? size + GUARD_SIZE : size);
    if (grown != nullptr)
        replaceIn<void>(arrays, array, grown);
    if (grown != nullptr && guarded)
        setGuard(grown, size);
    return grown;
}

void __wrap_free(void* array)
{
    checkGuard(array);
    if (array != nullptr)
        replaceIn<void>(arrays, array, nullptr);
    __real_free(array);
}
}

void test::guardArrays()
{
    guarding = true;
}
int test::brokenGuards()
{
    return guardsBroken;
}

int test::openStreams()
{
    return countIn(streams);
}
int test::heldArrays()
{
    return countIn(arrays);
}
int test::arraysHeldAtLastMessage()
{
    return heldAtLastMessage;
}

void test::closeLeftStreams()
{
    for (FILE*& stream : streams) {
        if (stream != nullptr)
            __real_fclose(stream);
        stream = nullptr;
    }
}

void test::freeLeftArrays()
{
    for (void*& array : arrays) {
        __real_free(array);
        array = nullptr;
    }
}

/* ---- Around every test -------------------------------------------------- */

static void emptyDirectory()
{
    DIR* directory = opendir(".");
    if (directory == nullptr)
        giveUp("no directory");
    for (const dirent* entry; (entry = readdir(directory)) != nullptr;) {
        if (entry->d_name[0] != '.' && unlink(entry->d_name) != 0)
            rmdir(entry->d_name);
    }
    closedir(directory);
}

static char directoryName[256]; /* under TMPDIR, or /tmp */

static void leaveDirectory()
{
    test::failNothing();
    emptyDirectory();
    if (chdir("/") == 0)
        rmdir(directoryName);
}

static void enterDirectory()
{
    static bool entered;
    if (!entered) {
        const char* temporary = getenv("TMPDIR");
        snprintf(directoryName, sizeof directoryName, "%s/algDataInterfaceTest.XXXXXX",
                 temporary != nullptr ? temporary : "/tmp");
        if (mkdtemp(directoryName) == nullptr || chdir(directoryName) != 0)
            giveUp("no directory of its own");
        atexit(leaveDirectory);
        entered = true;
    }
    emptyDirectory();
}

void test::beginTest()
{
    failNothing();
    enterDirectory();
    memset(faults, 0, sizeof faults);
    faultyBytesRead = 0;
    bufferSize = -1;
    openHook = nullptr;
    setLevel(6);
    clearMessages();
    ai_yra_patc_compensation = 10.0F;
    ai_yra_rssi_compensation = 3;
    memset(streams, 0, sizeof streams);
    strayCloses = 0;
    memset(arrays, 0, sizeof arrays);
    memset(guards, 0, sizeof guards);
    guarding = false;
    guardsBroken = 0;
}

const char* test::endTest()
{
    static char left[96];
    const int leftStreams = openStreams();
    const int leftArrays = heldArrays();
    closeLeftStreams();
    freeLeftArrays();
    releaseKept();
    if (leftStreams == 0 && leftArrays == 0 && strayCloses == 0)
        return nullptr;
    snprintf(left, sizeof left, "leaked: %d open streams, %d arrays; closed and not open: %d", leftStreams,
             leftArrays, strayCloses);
    return left;
}
