/* SPDX-License-Identifier: Apache-2.0 */
#include "testing.h"

static mini::Case* firstCase;
static mini::Case* lastCase;
static const mini::Case* current;
static long checks;
static bool currentFailed;
static const char* context;

bool mini::add(Case* testCase)
{
    if (lastCase == nullptr)
        firstCase = testCase;
    else
        lastCase->next = testCase;
    lastCase = testCase;
    return true;
}

bool mini::check(bool holds, const char* file, int line, const char* text)
{
    ++checks;
    if (!holds) {
        currentFailed = true;
        printf("%s:%d: %s.%s: does not hold: %s\n", file, line, current->suite, current->name, text);
        if (context != nullptr)
            printf("  in: %s\n", context);
    }
    return holds;
}

mini::Context::Context(const char* text)
{
    context = text;
}
mini::Context::~Context()
{
    context = nullptr;
}

void mini::show(const char* side, long long value)
{
    printf("  %s: %lld\n", side, value);
}
void mini::show(const char* side, unsigned long long value)
{
    printf("  %s: %llu\n", side, value);
}
void mini::show(const char* side, double value)
{
    printf("  %s: %.9g\n", side, value);
}
void mini::show(const char* side, const void* value)
{
    printf("  %s: %p\n", side, value);
}
void mini::showText(const char* side, const char* value)
{
    printf("  %s: \"%s\"\n", side, value == nullptr ? "(null)" : value);
}

/* Runs every test, or those whose "suite.name" contains the argument. */
int main(int argc, char** argv)
{
    setvbuf(stdout, nullptr, _IONBF, 0); /* what was found stays found if a test crashes */
    int passed = 0;
    int failed = 0;
    for (current = firstCase; current != nullptr; current = current->next) {
        char name[256];
        snprintf(name, sizeof name, "%s.%s", current->suite, current->name);
        if (argc > 1 && strstr(name, argv[1]) == nullptr)
            continue;
        currentFailed = false;
        test::beginTest();
        current->run();
        const char* left = test::endTest();
        if (left != nullptr) {
            currentFailed = true;
            printf("%s: %s\n", name, left);
        }
        if (currentFailed)
            ++failed;
        else
            ++passed;
    }
    printf("checks: %ld\n%d passed, %d failed\n", checks, passed, failed);
    return failed == 0 && passed > 0 ? 0 : 1;
}
