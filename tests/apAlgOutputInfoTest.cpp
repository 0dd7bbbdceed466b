/* SPDX-License-Identifier: Apache-2.0 */
/* The file of the algorithm's latest decision. */
#include "messages.h"
#include "scenario.h"

#include <sys/stat.h>

using namespace messages::output;
using namespace test;

static ApAlgInterfaceOutput makeOutput(const char* src, const char* dst, ALG_STRATEGY strategy, int timeout)
{
    ApAlgInterfaceOutput output;
    memset(&output, 0, sizeof output);
    snprintf(output.srcMAC, sizeof output.srcMAC, "%s", src);
    snprintf(output.dstMAC, sizeof output.dstMAC, "%s", dst);
    output.algStrategy = strategy;
    output.timeout = static_cast<uint8_t>(timeout);
    return output;
}

/* What a record holds before a read that should not change all of it. */
static ApAlgInterfaceOutput heldOutput()
{
    return makeOutput("srcHeld", "dstHeld", ALG_STRATEGY{77}, 99);
}

static bool isHeldOutput(const ApAlgInterfaceOutput* output)
{
    const ApAlgInterfaceOutput held = heldOutput();
    return memcmp(output->srcMAC, held.srcMAC, 16) == 0 && memcmp(output->dstMAC, held.dstMAC, 16) == 0 &&
           output->algStrategy == held.algStrategy && output->timeout == held.timeout;
}

/* A line of `blanks` blanks and a text. */
static void writeAfterBlanks(const char* path, size_t blanks, const char* text)
{
    char line[2048];
    memset(line, ' ', blanks);
    strcpy(line + blanks, text);
    test::writeFile(path, line);
}

/* ---- Writer ------------------------------------------------------------- */

TEST(ApAlgOutputInfo, writerWritesOneLine)
{
    ApAlgInterfaceOutput output = makeOutput("0A1B2C3D4E5F", "102030405060", ALG_STRATEGY_REDICAL, 30);
    EXPECT_TRUE(apAlgOutputInfoWriter("f", &output));
    EXPECT_STREQ("0A1B2C3D4E5F 102030405060 2 30\n", test::fileText("f"));
    EXPECT_EQ(0, test::messageCount());
}

TEST(ApAlgOutputInfo, writerReplacesTheFile)
{
    test::writeFile("f", "a much longer text that was here before this decision\nand another line\n");
    ApAlgInterfaceOutput output = makeOutput("0A1B2C3D4E5F", "102030405060", ALG_STRATEGY_UNKNOW, 0);
    EXPECT_TRUE(apAlgOutputInfoWriter("f", &output));
    EXPECT_STREQ("0A1B2C3D4E5F 102030405060 0 0\n", test::fileText("f"));
}

TEST(ApAlgOutputInfo, writerAlignsShortMacsRight)
{
    ApAlgInterfaceOutput output = makeOutput("abc", "", ALG_STRATEGY_CAREFUL, 255);
    EXPECT_TRUE(apAlgOutputInfoWriter("f", &output));
    EXPECT_STREQ("         abc              1 255\n", test::fileText("f"));
}

TEST(ApAlgOutputInfo, writerWritesLongMacsWhole)
{
    ApAlgInterfaceOutput output = makeOutput("ABCDEFGHIJKLMNO", "abcdefghijklmno", ALG_STRATEGY_GET_BEST, 9);
    EXPECT_TRUE(apAlgOutputInfoWriter("f", &output));
    EXPECT_STREQ("ABCDEFGHIJKLMNO abcdefghijklmno 3 9\n", test::fileText("f"));
}

TEST(ApAlgOutputInfo, writerWritesTheStrategyAsASignedNumber)
{
    ApAlgInterfaceOutput output = makeOutput("0A1B2C3D4E5F", "102030405060", ALG_STRATEGY{4294967295U}, 1);
    EXPECT_TRUE(apAlgOutputInfoWriter("f", &output));
    EXPECT_STREQ("0A1B2C3D4E5F 102030405060 -1 1\n", test::fileText("f"));
    output.algStrategy = ALG_STRATEGY{2147483648U};
    EXPECT_TRUE(apAlgOutputInfoWriter("f", &output));
    EXPECT_STREQ("0A1B2C3D4E5F 102030405060 -2147483648 1\n", test::fileText("f"));
    output.algStrategy = ALG_STRATEGY{2147483647U};
    EXPECT_TRUE(apAlgOutputInfoWriter("f", &output));
    EXPECT_STREQ("0A1B2C3D4E5F 102030405060 2147483647 1\n", test::fileText("f"));
}

TEST(ApAlgOutputInfo, writerLeavesTheRecord)
{
    ApAlgInterfaceOutput output = heldOutput();
    EXPECT_TRUE(apAlgOutputInfoWriter("f", &output));
    EXPECT_TRUE(isHeldOutput(&output));
}

static bool write(ApAlgInterfaceOutput output, const char* path = "f")
{
    return apAlgOutputInfoWriter(path, &output);
}

TEST(ApAlgOutputInfo, writerReportsFailures)
{
    static const Row rows[] = {
        Row("of a file that cannot be opened fails without a close", NO_FILE, noFault,
            [] { return write(heldOutput(), "no/file"); }, false,
            {"E apAlgOutputInfoWriter: fopen error, path: no/file."}),
        Row("leaves a file that it cannot open", "as it was\n", fails(OPEN, 1),
            [] {
                ApAlgInterfaceOutput output = heldOutput();
                const bool result = apAlgOutputInfoWriter("f", &output);
                EXPECT_EQ(1, test::callCount(test::OPEN));
                return result;
            },
            false, {writerCannotOpen}),
        Row(
            "reports a failed print and closes", "as it was\n", fails(WRITE, 1),
            [] {
                ApAlgInterfaceOutput output = heldOutput();
                const bool result = apAlgOutputInfoWriter("f", &output);
                EXPECT_EQ(1, test::callCount(test::WRITE));
                return result;
            },
            false, {writerCannotPrint}, ""),
        Row("reports a failed print on a full device", NO_FILE, unbuffered,
            [] { return write(heldOutput(), "/dev/full"); }, false,
            {"E apAlgOutputInfoWriter: fprintf error, path: /dev/full"}),
        Row("reports a failed close on a full device", NO_FILE, noFault,
            [] { return write(heldOutput(), "/dev/full"); }, false,
            {"E apAlgOutputInfoWriter: fclose error, path:/dev/full.\n"}),
        Row(
            "reports a failed close", NO_FILE, fails(CLOSE, 1),
            [] { return write(makeOutput("0A1B2C3D4E5F", "102030405060", ALG_STRATEGY_CAREFUL, 4)); }, false,
            {writerCannotClose}, "0A1B2C3D4E5F 102030405060 1 4\n"),
        Row(
            "reports a failed close after a failed print", NO_FILE, failBoth(WRITE, 1, CLOSE, 1),
            [] { return write(heldOutput()); }, false, {writerCannotPrint, writerCannotClose}, ""),
    };
    expectRows(rows);
}

/* ---- Reader ------------------------------------------------------------- */

TEST(ApAlgOutputInfo, readerReadsEveryField)
{
    test::writeFile("f", "0A1B2C3D4E5F 102030405060 2 30\n");
    ApAlgInterfaceOutput output = heldOutput();
    EXPECT_TRUE(apAlgOutputInfoReader("f", &output));
    EXPECT_STREQ("0A1B2C3D4E5F", output.srcMAC);
    EXPECT_STREQ("102030405060", output.dstMAC);
    EXPECT_EQ(2U, output.algStrategy);
    EXPECT_EQ(30, output.timeout);
    EXPECT_EQ(0, test::messageCount());
}

TEST(ApAlgOutputInfo, readerOpensAndClosesOnce)
{
    test::writeFile("f", "0A1B2C3D4E5F 102030405060 2 30\n");
    ApAlgInterfaceOutput output = heldOutput();
    EXPECT_TRUE(apAlgOutputInfoReader("f", &output));
    EXPECT_EQ(1, test::callCount(test::OPEN));
    EXPECT_EQ(1, test::callCount(test::CLOSE));
}

TEST(ApAlgOutputInfo, writtenRecordsComeBack)
{
    static const ALG_STRATEGY strategies[] = {
        ALG_STRATEGY_UNKNOW,       ALG_STRATEGY_CAREFUL,      ALG_STRATEGY_REDICAL,     ALG_STRATEGY_GET_BEST,
        ALG_STRATEGY{2147483647U}, ALG_STRATEGY{2147483648U}, ALG_STRATEGY{4294967295U}};
    int timeout = 249;
    for (ALG_STRATEGY strategy : strategies) {
        ApAlgInterfaceOutput written = makeOutput("0A1B2C3D4E5F", "102030405060", strategy, timeout);
        ApAlgInterfaceOutput read = heldOutput();
        EXPECT_TRUE(apAlgOutputInfoWriter("f", &written));
        EXPECT_TRUE(apAlgOutputInfoReader("f", &read));
        EXPECT_STREQ("0A1B2C3D4E5F", read.srcMAC);
        EXPECT_STREQ("102030405060", read.dstMAC);
        EXPECT_EQ(strategy, read.algStrategy);
        EXPECT_EQ(timeout, read.timeout);
        ++timeout;
    }
    EXPECT_EQ(256, timeout);
}

TEST(ApAlgOutputInfo, readerReadsTheStrategyAsAnUnsignedNumber)
{
    test::writeFile("f", "0A1B2C3D4E5F 102030405060 4294967295 255\n");
    ApAlgInterfaceOutput output = heldOutput();
    EXPECT_TRUE(apAlgOutputInfoReader("f", &output));
    EXPECT_EQ(4294967295U, output.algStrategy);
    EXPECT_EQ(255, output.timeout);
}

TEST(ApAlgOutputInfo, readerReadsDecimalsWithLeadingZeros)
{
    test::writeFile("f", "0A1B2C3D4E5F 102030405060 010 011\n");
    ApAlgInterfaceOutput output = heldOutput();
    EXPECT_TRUE(apAlgOutputInfoReader("f", &output));
    EXPECT_EQ(10U, output.algStrategy);
    EXPECT_EQ(11, output.timeout);
}

TEST(ApAlgOutputInfo, readerReadsTheFirstOfTwoLines)
{
    test::writeFile("f", "0A1B2C3D4E5F 102030405060 1 20\nA0A1A2A3A4A5 B0B1B2B3B4B5 3 40\n");
    ApAlgInterfaceOutput output = heldOutput();
    EXPECT_TRUE(apAlgOutputInfoReader("f", &output));
    EXPECT_STREQ("0A1B2C3D4E5F", output.srcMAC);
    EXPECT_STREQ("102030405060", output.dstMAC);
    EXPECT_EQ(1U, output.algStrategy);
    EXPECT_EQ(20, output.timeout);
}

TEST(ApAlgOutputInfo, readerDoesNotLookAtABlankSecondLine)
{
    test::writeFile("f", "0A1B2C3D4E5F 102030405060 1 20\n\n");
    ApAlgInterfaceOutput output = heldOutput();
    EXPECT_TRUE(apAlgOutputInfoReader("f", &output));
    EXPECT_EQ(20, output.timeout);
    EXPECT_EQ(0, test::messageCount());
}

TEST(ApAlgOutputInfo, readerReadsALineWithoutNewline)
{
    test::writeFile("f", "0A1B2C3D4E5F 102030405060 1 20");
    ApAlgInterfaceOutput output = heldOutput();
    EXPECT_TRUE(apAlgOutputInfoReader("f", &output));
    EXPECT_EQ(1U, output.algStrategy);
    EXPECT_EQ(20, output.timeout);
}

TEST(ApAlgOutputInfo, readerAcceptsAnyBlanksBetweenFields)
{
    test::writeFile("f", "  \t0A1B2C3D4E5F\t 102030405060   1\t20  \n");
    ApAlgInterfaceOutput output = heldOutput();
    EXPECT_TRUE(apAlgOutputInfoReader("f", &output));
    EXPECT_STREQ("0A1B2C3D4E5F", output.srcMAC);
    EXPECT_STREQ("102030405060", output.dstMAC);
    EXPECT_EQ(1U, output.algStrategy);
    EXPECT_EQ(20, output.timeout);
}

TEST(ApAlgOutputInfo, readerReadsTwelveCharactersOfAMac)
{
    test::writeFile("f", "0A1B2C3D4E5F102030405060123 4\n");
    ApAlgInterfaceOutput output = heldOutput();
    EXPECT_TRUE(apAlgOutputInfoReader("f", &output));
    EXPECT_STREQ("0A1B2C3D4E5F", output.srcMAC);
    EXPECT_STREQ("102030405060", output.dstMAC);
    EXPECT_EQ(123U, output.algStrategy);
    EXPECT_EQ(4, output.timeout);
}

TEST(ApAlgOutputInfo, readerKeepsTheFieldsThatALineDoesNotReach)
{
    test::writeFile("f", "0A1B2C3D4E5F\n");
    ApAlgInterfaceOutput output = heldOutput();
    EXPECT_TRUE(apAlgOutputInfoReader("f", &output));
    EXPECT_STREQ("0A1B2C3D4E5F", output.srcMAC);
    EXPECT_STREQ("dstHeld", output.dstMAC);
    EXPECT_EQ(77U, output.algStrategy);
    EXPECT_EQ(99, output.timeout);

    test::writeFile("f", "A0A1A2A3A4A5 B0B1B2B3B4B5 5\n1 2 3 4\n");
    EXPECT_TRUE(apAlgOutputInfoReader("f", &output));
    EXPECT_STREQ("A0A1A2A3A4A5", output.srcMAC);
    EXPECT_STREQ("B0B1B2B3B4B5", output.dstMAC);
    EXPECT_EQ(5U, output.algStrategy);
    EXPECT_EQ(99, output.timeout);
    EXPECT_EQ(0, test::messageCount());
}

TEST(ApAlgOutputInfo, readerStopsAtAFieldThatDoesNotConvert)
{
    test::writeFile("f", "0A1B2C3D4E5F 102030405060 x 20\n");
    ApAlgInterfaceOutput output = heldOutput();
    EXPECT_TRUE(apAlgOutputInfoReader("f", &output));
    EXPECT_STREQ("102030405060", output.dstMAC);
    EXPECT_EQ(77U, output.algStrategy);
    EXPECT_EQ(99, output.timeout);
    EXPECT_EQ(0, test::messageCount());
}

TEST(ApAlgOutputInfo, readerReadsAtMost1023CharactersAsTheLine)
{
    writeAfterBlanks("f", 1020, "0A1B2C3D4E5F 102030405060 1 20\n");
    ApAlgInterfaceOutput output = heldOutput();
    EXPECT_TRUE(apAlgOutputInfoReader("f", &output));
    EXPECT_STREQ("0A1", output.srcMAC);
    EXPECT_STREQ("dstHeld", output.dstMAC);
    EXPECT_EQ(77U, output.algStrategy);
    EXPECT_EQ(99, output.timeout);
}

TEST(ApAlgOutputInfo, readerReadsALineOf1023Characters)
{
    writeAfterBlanks("f", 993, "0A1B2C3D4E5F 102030405060 1 20\n");
    ApAlgInterfaceOutput output = heldOutput();
    EXPECT_TRUE(apAlgOutputInfoReader("f", &output));
    EXPECT_EQ(1U, output.algStrategy);
    EXPECT_EQ(20, output.timeout);
}

TEST(ApAlgOutputInfo, readerOfAnEmptyFileReadsNothingAndSucceeds)
{
    test::writeFile("f", "");
    ApAlgInterfaceOutput output = heldOutput();
    EXPECT_TRUE(apAlgOutputInfoReader("f", &output));
    EXPECT_TRUE(isHeldOutput(&output));
    EXPECT_EQ(0, test::messageCount());
}

TEST(ApAlgOutputInfo, readerOfADirectoryReadsNothingAndSucceeds)
{
    mkdir("f", 0777);
    ApAlgInterfaceOutput output = heldOutput();
    EXPECT_TRUE(apAlgOutputInfoReader("f", &output));
    EXPECT_TRUE(isHeldOutput(&output));
    EXPECT_EQ(0, test::messageCount());
}

TEST(ApAlgOutputInfo, readerLeavesTheFile)
{
    test::writeFile("f", "0A1B2C3D4E5F 102030405060 1 20\nmore\n");
    ApAlgInterfaceOutput output = heldOutput();
    EXPECT_TRUE(apAlgOutputInfoReader("f", &output));
    EXPECT_STREQ("0A1B2C3D4E5F 102030405060 1 20\nmore\n", test::fileText("f"));
}

static bool readNothing()
{
    ApAlgInterfaceOutput output = heldOutput();
    const bool result = apAlgOutputInfoReader("f", &output);
    EXPECT_TRUE(isHeldOutput(&output));
    return result;
}

static bool readHeld()
{
    ApAlgInterfaceOutput output = heldOutput();
    return apAlgOutputInfoReader("f", &output);
}

TEST(ApAlgOutputInfo, readerReportsFailures)
{
    static const Row rows[] = {
        Row(
            "fails on 1023 leading blanks", NO_FILE, noFault,
            [] {
                writeAfterBlanks("f", 1023, "0A1B2C3D4E5F 102030405060 1 20\n");
                ApAlgInterfaceOutput output = heldOutput();
                const bool result = apAlgOutputInfoReader("f", &output);
                EXPECT_TRUE(isHeldOutput(&output));
                return result;
            },
            false, {readerCannotRead}, ANY_FILE),
        Row("treats a read error as an empty file", "0A1B2C3D4E5F 102030405060 1 20\n", fails(READ, 1),
            readNothing, true),
        Row("fails on an empty first line", "\n0A1B2C3D4E5F 102030405060 1 20\n", noFault,
            [] {
                ApAlgInterfaceOutput output = heldOutput();
                const bool result = apAlgOutputInfoReader("f", &output);
                EXPECT_TRUE(isHeldOutput(&output));
                return result;
            },
            false, {readerCannotRead}),
        Row("fails on a blank first line", " \t \n0A1B2C3D4E5F 102030405060 1 20\n", noFault, readNothing,
            false, {readerCannotRead}),
        Row(
            "fails on a line that starts with a nul", NO_FILE, noFault,
            [] {
                test::writeBytes("f", "\0 0A1B2C3D4E5F 102030405060 1 20\n", 33);
                ApAlgInterfaceOutput output = heldOutput();
                const bool result = apAlgOutputInfoReader("f", &output);
                EXPECT_TRUE(isHeldOutput(&output));
                return result;
            },
            false, {readerCannotRead}, ANY_FILE),
        Row("of a missing file fails", NO_FILE, noFault,
            [] {
                ApAlgInterfaceOutput output = heldOutput();
                const bool result = apAlgOutputInfoReader("f", &output);
                EXPECT_TRUE(isHeldOutput(&output));
                return result;
            },
            false, {readerCannotOpen}),
        Row("reports a failed close and keeps what it read", "0A1B2C3D4E5F 102030405060 1 20\n",
            fails(CLOSE, 1),
            [] {
                ApAlgInterfaceOutput output = heldOutput();
                const bool result = apAlgOutputInfoReader("f", &output);
                EXPECT_STREQ("0A1B2C3D4E5F", output.srcMAC);
                EXPECT_EQ(20, output.timeout);
                return result;
            },
            false, {readerCannotClose}),
        Row("reports a failed close of an empty file", "", fails(CLOSE, 1), readHeld, false,
            {readerCannotClose}),
    };
    expectRows(rows);
}
