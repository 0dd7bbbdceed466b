/* SPDX-License-Identifier: Apache-2.0 */
#include "scenario.h"

#include <sys/stat.h>
#include <unistd.h>

/* ---- Messages ----------------------------------------------------------- */

/* The lowest level at which a message of this kind is logged. */
static int levelOf(const char* message)
{
    return message[0] == 'E' ? 3 : message[0] == 'N' ? 5 : 6;
}

const char* test::transcriptOf(const char* const* messages, size_t count)
{
    static char text[1 << 16];
    size_t length = 0;
    text[0] = '\0';
    for (size_t i = 0; i < count && messages[i] != nullptr; ++i) {
        const char* function = messages[i] + 2;
        const size_t name = strcspn(function, ":");
        if (g_yra_debug >= levelOf(messages[i]))
            length +=
                static_cast<size_t>(snprintf(text + length, sizeof text - length, "libzo: [%.*s:#]: %s|",
                                             static_cast<int>(name), function, function + name + 2));
    }
    return text;
}

int test::timesLogged(const char* message)
{
    const char* text = transcriptOf(&message, 1);
    int times = 0;
    for (const char* at = messages(); (at = strstr(at, text)) != nullptr; at += strlen(text))
        ++times;
    return times;
}

bool test::isFirstMessage(const char* message)
{
    const char* text = transcriptOf(&message, 1);
    return strncmp(messages(), text, strlen(text)) == 0;
}

/* ---- Rows --------------------------------------------------------------- */

const char test::NO_FILE[] = "<missing>";
const char test::DIRECTORY[] = "<directory>";
const char test::AS_BEFORE[] = "<as before>";
const char test::ANY_FILE[] = "<any>";

static const char path[] = "f";

static const char* fileNow()
{
    struct stat status;
    return stat(path, &status) == 0 && S_ISDIR(status.st_mode) ? test::DIRECTORY : test::fileText(path);
}

static void makeFile(const char* state)
{
    if (unlink(path) != 0)
        rmdir(path);
    if (state == test::DIRECTORY)
        mkdir(path, 0777);
    else if (state != test::NO_FILE)
        test::writeFile(path, state);
}

static void arm(const test::Fault& fault)
{
    test::forgetCalls();
    test::streamBuffer(fault.unbuffered ? 0 : -1);
    if (fault.nth != 0 && fault.onwards)
        test::failFrom(fault.call, fault.nth);
    else if (fault.nth != 0)
        test::failNth(fault.call, fault.nth);
    if (fault.alsoNth != 0)
        test::failNth(fault.also, fault.alsoNth);
    if (fault.hook != nullptr)
        test::beforeOpen(fault.hookAt, fault.hook);
}

static void expectRow(const test::Row& row, int level)
{
    makeFile(row.before);
    test::setLevel(level);
    test::clearMessages();
    arm(row.fault);
    const bool result = row.call();
    test::failNothing();
    EXPECT_EQ(row.result, result);
    EXPECT_STREQ(test::transcriptOf(row.messages.list), test::messages());
    if (row.after != test::ANY_FILE) {
        EXPECT_STREQ(row.after == test::AS_BEFORE ? row.before : row.after, fileNow());
    }
    EXPECT_EQ(0, test::openStreams());
    EXPECT_EQ(0, test::heldArrays());
}

void test::expectRows(const Row* rows, size_t count)
{
    for (size_t i = 0; i < count; ++i) {
        for (int level = 7; level >= 1; --level) {
            char where[256];
            snprintf(where, sizeof where, "%s, at level %d", rows[i].name, level);
            const Context context(where);
            expectRow(rows[i], level);
        }
    }
    makeFile(NO_FILE);
    setLevel(6);
    clearMessages();
    forgetCalls();
    streamBuffer(-1);
}

void test::expectStopsAtEachPrint(bool (*write)(), const char* const* prints, size_t count,
                                  const char* message)
{
    char left[2048] = "";
    for (size_t i = 0; i <= count; ++i) {
        char name[32];
        snprintf(name, sizeof name, "print %d", static_cast<int>(i) + 1);
        const Fault fault = fails(WRITE, static_cast<int>(i) + 1);
        const bool stops = i < count;
        const Row row(name, "as it was\n", fault, write, !stops, {stops ? message : nullptr}, left);
        expectRows(&row, 1);
        if (stops)
            strcat(left, prints[i]);
    }
}

/* ---- Memory that must not change ---------------------------------------- */

void test::mark(void* bytes, size_t size)
{
    memset(bytes, 0x55, size);
}

bool test::isMarked(const void* bytes, size_t size)
{
    const unsigned char* at = static_cast<const unsigned char*>(bytes);
    for (size_t i = 0; i < size; ++i) {
        if (at[i] != 0x55)
            return false;
    }
    return true;
}
