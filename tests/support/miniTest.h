/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The test macros without a C++ library: enough of GoogleTest's names to run
 * the same test sources on a target that has only a C library.
 */
#ifndef TESTS_SUPPORT_MINI_TEST_H
#define TESTS_SUPPORT_MINI_TEST_H

#include <stdio.h>
#include <string.h>

namespace mini
{

struct Case {
    const char* suite;
    const char* name;
    void (*run)();
    Case* next;
};

/* Adds a test after the known ones; called before main() begins. */
bool add(Case* testCase);

/* Counts one check, and reports it if it fails. Returns `holds`. */
bool check(bool holds, const char* file, int line, const char* text);

/* While this object exists, failed checks are reported with this text. */
class Context
{
  public:
    explicit Context(const char* text);
    ~Context();
};

/* Prints one side of a failed comparison. */
void show(const char* side, long long value);
void show(const char* side, unsigned long long value);
void show(const char* side, double value);
void show(const char* side, const void* value);
void showText(const char* side, const char* value);

inline void showValue(const char* side, bool v)
{
    show(side, static_cast<long long>(v));
}
inline void showValue(const char* side, char v)
{
    show(side, static_cast<long long>(v));
}
inline void showValue(const char* side, signed char v)
{
    show(side, static_cast<long long>(v));
}
inline void showValue(const char* side, unsigned char v)
{
    show(side, static_cast<long long>(v));
}
inline void showValue(const char* side, short v)
{
    show(side, static_cast<long long>(v));
}
inline void showValue(const char* side, unsigned short v)
{
    show(side, static_cast<long long>(v));
}
inline void showValue(const char* side, int v)
{
    show(side, static_cast<long long>(v));
}
inline void showValue(const char* side, long v)
{
    show(side, static_cast<long long>(v));
}
inline void showValue(const char* side, long long v)
{
    show(side, v);
}
inline void showValue(const char* side, unsigned v)
{
    show(side, static_cast<unsigned long long>(v));
}
inline void showValue(const char* side, unsigned long v)
{
    show(side, static_cast<unsigned long long>(v));
}
inline void showValue(const char* side, unsigned long long v)
{
    show(side, v);
}
inline void showValue(const char* side, double v)
{
    show(side, v);
}
inline void showValue(const char* side, const void* v)
{
    show(side, v);
}

template <typename A, typename B>
bool shown(bool holds, const A& a, const B& b, const char* file, int line, const char* text)
{
    if (!check(holds, file, line, text)) {
        showValue("left", a);
        showValue("right", b);
    }
    return holds;
}

/* Like GoogleTest: C++ compares signed with unsigned. */
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wsign-compare"
template <typename A, typename B>
bool equal(const A& a, const B& b, const char* file, int line, const char* text)
{
    return shown(a == b, a, b, file, line, text);
}
template <typename A, typename B>
bool unequal(const A& a, const B& b, const char* file, int line, const char* text)
{
    return shown(!(a == b), a, b, file, line, text);
}
template <typename A, typename B>
bool less(const A& a, const B& b, const char* file, int line, const char* text)
{
    return shown(a < b, a, b, file, line, text);
}
template <typename A, typename B>
bool lessOrEqual(const A& a, const B& b, const char* file, int line, const char* text)
{
    return shown(a <= b, a, b, file, line, text);
}
#pragma GCC diagnostic pop

inline bool sameText(const char* a, const char* b)
{
    return a == b || (a != nullptr && b != nullptr && strcmp(a, b) == 0);
}

inline bool shownText(bool holds, const char* a, const char* b, const char* file, int line, const char* text)
{
    if (!check(holds, file, line, text)) {
        showText("left", a);
        showText("right", b);
    }
    return holds;
}

} // namespace mini

#define TEST(suiteName, testName)                                                                     \
    static void suiteName##_##testName();                                                             \
    static mini::Case suiteName##_##testName##_case = {#suiteName, #testName, suiteName##_##testName, \
                                                       nullptr};                                      \
    [[maybe_unused]] static const bool suiteName##_##testName##_added =                               \
        mini::add(&suiteName##_##testName##_case);                                                    \
    static void suiteName##_##testName()

#define MINI_TEXT(name, a, b) name "(" #a ", " #b ")"

#define EXPECT_TRUE(x) \
    static_cast<void>(mini::check(static_cast<bool>(x), __FILE__, __LINE__, "TRUE(" #x ")"))
#define EXPECT_FALSE(x) static_cast<void>(mini::check(!(x), __FILE__, __LINE__, "FALSE(" #x ")"))
#define EXPECT_EQ(a, b) static_cast<void>(mini::equal(a, b, __FILE__, __LINE__, MINI_TEXT("EQ", a, b)))
#define EXPECT_NE(a, b) static_cast<void>(mini::unequal(a, b, __FILE__, __LINE__, MINI_TEXT("NE", a, b)))
#define EXPECT_LT(a, b) static_cast<void>(mini::less(a, b, __FILE__, __LINE__, MINI_TEXT("LT", a, b)))
#define EXPECT_LE(a, b) static_cast<void>(mini::lessOrEqual(a, b, __FILE__, __LINE__, MINI_TEXT("LE", a, b)))
#define EXPECT_GT(a, b) static_cast<void>(mini::less(b, a, __FILE__, __LINE__, MINI_TEXT("GT", a, b)))
#define EXPECT_GE(a, b) static_cast<void>(mini::lessOrEqual(b, a, __FILE__, __LINE__, MINI_TEXT("GE", a, b)))
#define EXPECT_STREQ(a, b) \
    static_cast<void>(     \
        mini::shownText(mini::sameText(a, b), a, b, __FILE__, __LINE__, MINI_TEXT("STREQ", a, b)))
#define EXPECT_STRNE(a, b) \
    static_cast<void>(     \
        mini::shownText(!mini::sameText(a, b), a, b, __FILE__, __LINE__, MINI_TEXT("STRNE", a, b)))

#define ASSERT_TRUE(x)                                                          \
    if (!mini::check(static_cast<bool>(x), __FILE__, __LINE__, "TRUE(" #x ")")) \
    return
#define ASSERT_FALSE(x)                                          \
    if (!mini::check(!(x), __FILE__, __LINE__, "FALSE(" #x ")")) \
    return
#define ASSERT_EQ(a, b)                                                \
    if (!mini::equal(a, b, __FILE__, __LINE__, MINI_TEXT("EQ", a, b))) \
    return
#define ASSERT_NE(a, b)                                                  \
    if (!mini::unequal(a, b, __FILE__, __LINE__, MINI_TEXT("NE", a, b))) \
    return
#define ASSERT_LT(a, b)                                               \
    if (!mini::less(a, b, __FILE__, __LINE__, MINI_TEXT("LT", a, b))) \
    return
#define ASSERT_LE(a, b)                                                      \
    if (!mini::lessOrEqual(a, b, __FILE__, __LINE__, MINI_TEXT("LE", a, b))) \
    return
#define ASSERT_GT(a, b)                                               \
    if (!mini::less(b, a, __FILE__, __LINE__, MINI_TEXT("GT", a, b))) \
    return
#define ASSERT_GE(a, b)                                                      \
    if (!mini::lessOrEqual(b, a, __FILE__, __LINE__, MINI_TEXT("GE", a, b))) \
    return
#define ASSERT_STREQ(a, b)                                                                          \
    if (!mini::shownText(mini::sameText(a, b), a, b, __FILE__, __LINE__, MINI_TEXT("STREQ", a, b))) \
    return

#endif
