/* SPDX-License-Identifier: Apache-2.0 */
#include "testing.h"

#include "dataInterface/text/fields.h"

using namespace alg_internal;

/* ---- Reading ------------------------------------------------------------ */

/* Opens a file of `text` for reading. The test closes it. */
static void open(TextIn& in, const char* text)
{
    test::writeFile("text", text);
    ASSERT_TRUE(openText(in, "text"));
}

/* The same with the buffer filled, as it is after the first field of a file. */
static void openFilled(TextIn& in, const char* text)
{
    char whole[256];
    snprintf(whole, sizeof whole, "0 %s", text);
    open(in, whole);
    uint8_t nought = 1;
    EXPECT_EQ(scan(in, FORMAT("%hhu"), nought), 1);
}

TEST(Text, numbersAreReadAndTheLineEndIsABlank)
{
    TextIn in;
    open(in, "1 22\n\t 333");
    uint8_t a = 0;
    uint16_t b = 0;
    uint32_t c = 0;
    EXPECT_EQ(scan(in, FORMAT("%hhu %hu %u"), a, b, c), 3);
    EXPECT_EQ(a, 1);
    EXPECT_EQ(b, 22);
    EXPECT_EQ(c, 333U);
    EXPECT_EQ(scan(in, FORMAT("%hhu"), a), -1);
    EXPECT_EQ(a, 1);
    closeText(in);
}

TEST(Text, nothingIsReadOfWhatLayThereBefore)
{
    test::writeFile("text", "1 2");
    TextIn in;
    memset(static_cast<void*>(&in), '7', sizeof in);
    ASSERT_TRUE(openText(in, "text"));
    char text[TEXT_SIZE];
    uint8_t b = 0;
    EXPECT_EQ(scan(in, FORMAT("%12s %hhu"), text, b), 2);
    EXPECT_STREQ(text, "1");
    EXPECT_EQ(b, 2);
    EXPECT_EQ(scan(in, FORMAT("%hhu"), b), -1);
    closeText(in);
}

TEST(Text, inputWidthSplitsANumber)
{
    TextIn in;
    openFilled(in, "12345 -67");
    uint16_t a = 0;
    uint16_t b = 0;
    uint16_t c = 0;
    EXPECT_EQ(scan(in, FORMAT("%4hu %4hu %2hu"), a, b, c), 3);
    EXPECT_EQ(a, 1234);
    EXPECT_EQ(b, 5);
    EXPECT_EQ(c, 65530); /* the sign counts to the width */
    EXPECT_EQ(scan(in, FORMAT("%4hu"), a), 1);
    EXPECT_EQ(a, 7);
    closeText(in);
}

TEST(Text, widthOfOneIsOneDigit)
{
    TextIn in;
    openFilled(in, "123");
    uint8_t a = 0;
    uint8_t b = 0;
    EXPECT_EQ(scan(in, FORMAT("%1hhu%1hhu"), a, b), 2);
    EXPECT_EQ(a, 1);
    EXPECT_EQ(b, 2);
    closeText(in);
}

TEST(Text, numbersWrapToTheirFieldAndSaturateAt64Bits)
{
    TextIn in;
    openFilled(in, "256 65537 4294967298 18446744073709551615 18446744073709551617 -1 -18446744073709551617");
    uint8_t a = 9;
    uint16_t b = 9;
    uint32_t c = 9;
    uint16_t d = 9;
    uint16_t e = 9;
    uint8_t f = 9;
    uint8_t g = 9;
    EXPECT_EQ(scan(in, FORMAT("%hhu %hu %u %hu %hu %hhu %hhu"), a, b, c, d, e, f, g), 7);
    EXPECT_EQ(a, 0);
    EXPECT_EQ(b, 1);
    EXPECT_EQ(c, 2U);
    EXPECT_EQ(d, 65535);
    EXPECT_EQ(e, 65535); /* wrapping alone would give 1 */
    EXPECT_EQ(f, 255);
    EXPECT_EQ(g, 255);
    closeText(in);
}

TEST(Text, tenDigitsAreNoLessThanNine)
{
    TextIn in;
    open(in, "999999999 4294967295 0000000000012 ");
    uint32_t a = 0;
    uint32_t b = 0;
    uint32_t c = 0;
    EXPECT_EQ(scan(in, FORMAT("%u %u %u"), a, b, c), 3);
    EXPECT_EQ(a, 999999999U);
    EXPECT_EQ(b, 4294967295U);
    EXPECT_EQ(c, 12U);
    closeText(in);
}

TEST(Text, mismatchEndsTheCallAndStaysForTheNext)
{
    TextIn in;
    open(in, "5 x7 +y");
    uint8_t a = 0;
    uint8_t b = 44;
    char text[16] = "";
    EXPECT_EQ(scan(in, FORMAT("%hhu %hhu"), a, b), 1);
    EXPECT_EQ(scan(in, FORMAT("%hhu"), b), 0);
    EXPECT_EQ(b, 44);
    EXPECT_EQ(scan(in, FORMAT("%12s"), text), 1);
    EXPECT_STREQ(text, "x7");
    EXPECT_EQ(scan(in, FORMAT("%hhu"), b), 0); /* takes the sign with it */
    EXPECT_EQ(scan(in, FORMAT("%12s"), text), 1);
    EXPECT_STREQ(text, "y");
    closeText(in);
}

TEST(Text, textTakesTwelveCharactersAndNulsAmongThem)
{
    TextIn in;
    test::writeBytes("text", "  0123456789abcdef a\0b", 22);
    ASSERT_TRUE(openText(in, "text"));
    char a[16];
    char b[16];
    char c[16];
    memset(c, '#', sizeof c);
    EXPECT_EQ(scan(in, FORMAT("%12s %12s"), a, b), 2);
    EXPECT_STREQ(a, "0123456789ab");
    EXPECT_STREQ(b, "cdef");
    EXPECT_EQ(scan(in, FORMAT("%12s"), c), 1);
    EXPECT_EQ(memcmp(c, "a\0b\0#", 5), 0);
    closeText(in);
}

TEST(Text, textOfAnyWidthEndsAtIt)
{
    TextIn in;
    openFilled(in, "abcdefghijklmnop");
    char ten[TEXT_SIZE];
    char three[TEXT_SIZE];
    char rest[TEXT_SIZE];
    EXPECT_EQ(scan(in, FORMAT("%10s%3s%8s"), ten, three, rest), 3);
    EXPECT_STREQ(ten, "abcdefghij");
    EXPECT_STREQ(three, "klm");
    EXPECT_STREQ(rest, "nop");
    closeText(in);
}

TEST(Text, blanksOfAFormatInARowSayWhatOneSays)
{
    TextIn in;
    openFilled(in, "1 2  -3");
    uint8_t a = 0;
    uint8_t b = 0;
    uint8_t c = 0;
    EXPECT_EQ(scan(in, FORMAT(" %hhu  %hhu \n%hhu  "), a, b, c), 3);
    EXPECT_EQ(a, 1);
    EXPECT_EQ(b, 2);
    EXPECT_EQ(c, 253);
    closeText(in);
}

TEST(Text, numberAcrossTheBuffersEndIsOneNumber)
{
    char text[1100];
    memset(text, ' ', sizeof text);
    memcpy(text + 1021, "65432", 5);
    memcpy(text + 1030, "7", 2);
    TextIn in;
    open(in, text);
    uint16_t a = 0;
    uint8_t b = 0;
    EXPECT_EQ(scan(in, FORMAT("%hu %hhu"), a, b), 2);
    EXPECT_EQ(a, 65432);
    EXPECT_EQ(b, 7);
    closeText(in);
}

TEST(Text, floatsInEveryForm)
{
    TextIn in;
    open(in,
         "1.5 -.25 3. 2e3 0x1.8p1 16777217 1.00000005960464477539062500000000000000000001 1e-46 1e99 inf x");
    float f[2] = {7, 7};
    EXPECT_EQ(scan(in, FORMAT("%f %f"), f[0], f[1]), 2);
    EXPECT_EQ(f[0], 1.5F);
    EXPECT_EQ(f[1], -0.25F);
    EXPECT_EQ(scan(in, FORMAT("%f %f"), f[0], f[1]), 2);
    EXPECT_EQ(f[0], 3.0F);
    EXPECT_EQ(f[1], 2000.0F);
    EXPECT_EQ(scan(in, FORMAT("%f %f"), f[0], f[1]), 2);
    EXPECT_EQ(f[0], 3.0F);
    EXPECT_EQ(f[1], 16777216.0F); /* halfway, to even */
    EXPECT_EQ(scan(in, FORMAT("%f %f"), f[0], f[1]), 2);
    EXPECT_EQ(f[0], 1.00000011920928955078125F); /* just above halfway */
    EXPECT_EQ(f[1], 0.0F);
    EXPECT_EQ(scan(in, FORMAT("%f %f"), f[0], f[1]), 2);
    EXPECT_EQ(f[0], __builtin_inff());
    EXPECT_EQ(f[1], __builtin_inff());
    f[0] = 7;
    EXPECT_EQ(scan(in, FORMAT("%f"), f[0]), 0);
    EXPECT_EQ(f[0], 7.0F);
    closeText(in);
}

TEST(Text, nineDigitsGiveTheNearestFloat)
{
    TextIn in;
    openFilled(in, "16777217 16777219 1.00000006 .123456789 999999999 0.00000001 12.50");
    float a[7] = {};
    EXPECT_EQ(scan(in, FORMAT("%f %f %f %f %f %f %f"), a[0], a[1], a[2], a[3], a[4], a[5], a[6]), 7);
    EXPECT_EQ(a[0], 16777216.0F); /* halfway: to the even one */
    EXPECT_EQ(a[1], 16777220.0F);
    EXPECT_EQ(a[2], 0x1.000002p+0F); /* above halfway by less than a double can tell from a float */
    EXPECT_EQ(a[3], 0x1.f9add4p-4F);
    EXPECT_EQ(a[4], 1e9F);
    EXPECT_EQ(a[5], 0x1.5798eep-27F);
    EXPECT_EQ(a[6], 12.5F);
    closeText(in);
}

TEST(Text, linesAreSlicesOfAtMost1023Characters)
{
    char text[3000];
    memset(text, '1', 2500);
    memcpy(text + 2500, "\n2\n\n3", 6);
    TextIn in;
    open(in, text);
    const int lengths[] = {1023, 1023, 455, 2, 1, 1};
    for (int length : lengths) {
        ASSERT_TRUE(nextLine(in));
        EXPECT_EQ(in.lineEnd - in.at, length);
    }
    EXPECT_FALSE(nextLine(in));
    closeText(in);
    FILE* fp = fopen("text", "r");
    EXPECT_EQ(countLines(File{fp}), 6);
    fclose(fp);
}

TEST(Text, lineIsReadUpToANulAndAlone)
{
    TextIn in;
    test::writeBytes("text", "1 \0 2\n3\n", 8);
    ASSERT_TRUE(openText(in, "text"));
    uint8_t a = 0;
    uint8_t b = 44;
    ASSERT_TRUE(nextLine(in));
    EXPECT_EQ(scan(in, FORMAT("%hhu %hhu"), a, b), 1);
    EXPECT_EQ(b, 44);
    ASSERT_TRUE(nextLine(in));
    EXPECT_EQ(scan(in, FORMAT("%hhu %hhu"), a, b), 1);
    EXPECT_EQ(a, 3);
    EXPECT_FALSE(nextLine(in));
    closeText(in);
}

/* ---- Printing ----------------------------------------------------------- */

TEST(Text, widthsAreMinimumsAndFieldsRightAligned)
{
    TextOut out;
    ASSERT_TRUE(openText(out, "text"));
    const char mac[16] = "a1b2";
    const uint8_t small = 7;
    const uint16_t big = 65535;
    const uint32_t huge = 4294967295U;
    const int minus = INT32_MIN;
    EXPECT_EQ(print(out, FORMAT("%12s %3hhu %3hu %hu %u %d\n"), mac, small, big, big, huge, minus), 0);
    EXPECT_EQ(print(out, FORMAT(" %2hhu"), small), 0);
    EXPECT_EQ(closeText(out), 0);
    EXPECT_STREQ(test::fileText("text"), "        a1b2   7 65535 65535 4294967295 -2147483648\n  7");
}

TEST(Text, everyLengthOfANumberIsPrinted)
{
    TextOut out;
    ASSERT_TRUE(openText(out, "text"));
    const uint32_t nines[] = {0, 9, 99, 999, 9999, 99999, 999999, 9999999, 99999999, 999999999};
    for (uint32_t number : nines) {
        const uint32_t next = number + 1;
        EXPECT_EQ(print(out, FORMAT("%u %u\n"), number, next), 0);
    }
    EXPECT_EQ(closeText(out), 0);
    EXPECT_STREQ(test::fileText("text"), "0 1\n9 10\n99 100\n999 1000\n9999 10000\n99999 100000\n"
                                         "999999 1000000\n9999999 10000000\n99999999 100000000\n"
                                         "999999999 1000000000\n");
}

TEST(Text, floatsArePrintedToTheNearestHundredth)
{
    TextOut out;
    ASSERT_TRUE(openText(out, "text"));
    const float values[] = {1.5F, 0.333F, 0.125F, 0.375F, -0.001F, 8388607.5F, 8388608.0F, 3.4028235e38F};
    for (float value : values)
        EXPECT_EQ(print(out, FORMAT("%.2f "), value), 0);
    EXPECT_EQ(closeText(out), 0);
    EXPECT_STREQ(test::fileText("text"), "1.50 0.33 0.12 0.38 -0.00 8388607.50 8388608.00 "
                                         "340282346638528859811704183484516925440.00 ");
}

TEST(Text, textIsReadNoFurtherThanItsArray)
{
    struct {
        char mac[16];
        char behind[4];
    } record = {{'0', '1', '2', '3', '4', '5', '6', '7', '8', '9', 'a', 'b', 'c', 'd', 'e', 'f'}, "xyz"};
    TextOut out;
    ASSERT_TRUE(openText(out, "text"));
    EXPECT_EQ(print(out, FORMAT("%12s\n"), record.mac), 0);
    EXPECT_EQ(closeText(out), 0);
    EXPECT_STREQ(test::fileText("text"), "0123456789abcdef\n");
}

TEST(Text, printThatDoesNotFitTheStreamsBufferHasTheStreamsResult)
{
    test::streamBuffer(1024);
    TextOut out;
    ASSERT_TRUE(openText(out, "/dev/full"));
    const uint16_t value = 1234;
    int taken = 0;
    while (taken < 1000 && print(out, FORMAT("%hu "), value) == 0)
        ++taken;
#if defined(__GLIBC__)
    EXPECT_EQ(taken, 204); /* 1020 characters; the next one would be the 1025th */
#else
    EXPECT_LE(taken, 204);
    EXPECT_GE(taken, 200);
#endif
    closeText(out);
}

/* Halfway between two floats, and more digits behind it than are kept. */
TEST(Text, digitsThatAreNotKeptStillCount)
{
    static const char halfway[] = "1.000000059604644775390625";
    char text[400];
    snprintf(text, sizeof text, "%s%0150d %s%0150d", halfway, 0, halfway, 1);
    TextIn in;
    open(in, text);
    float f[2] = {7, 7};
    EXPECT_EQ(scan(in, FORMAT("%f %f"), f[0], f[1]), 2);
    EXPECT_EQ(f[0], 1.0F);
    EXPECT_EQ(f[1], 1.00000011920928955078125F);
    closeText(in);
}

TEST(Text, exponentMakesUpForAnyNumberOfNoughts)
{
    static char text[310000]; /* 0.00...e150001 and 100...e-150000 */
    memset(text, '0', 300100);
    memcpy(text, "0.", 2);
    memcpy(text + 150002, "1e150001 1", 10);
    strcpy(text + 300012, "e-150000");
    TextIn in;
    open(in, text);
    float f[2] = {7, 7};
    EXPECT_EQ(scan(in, FORMAT("%f %f"), f[0], f[1]), 2);
    EXPECT_EQ(f[0], 1.0F);
    EXPECT_EQ(f[1], 1.0F);
    closeText(in);
}

TEST(Text, printOfALineToATerminalHasTheResultOfTheLine)
{
    static char buffer[1024];
    FILE* fp = fopen("/dev/full", "w");
    setvbuf(fp, buffer, _IOLBF, sizeof buffer);
    TextOut out;
    startText(out, File{fp});
    const uint16_t value = 1234;
    EXPECT_EQ(print(out, FORMAT("%hu "), value), 0);
    EXPECT_EQ(print(out, FORMAT("%hu\n"), value), -1);
    closeText(out);
}
