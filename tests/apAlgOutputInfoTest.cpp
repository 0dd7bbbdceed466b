/* SPDX-License-Identifier: Apache-2.0 */
/* The file of the algorithm's latest decision. */
#include "testing.h"

#include <sys/stat.h>

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

TEST(ApAlgOutputInfo, recordHasNaturalAlignment)
{
    EXPECT_EQ(sizeof(ApAlgInterfaceOutput), 40U);
    EXPECT_EQ(offsetof(ApAlgInterfaceOutput, srcMAC), 0U);
    EXPECT_EQ(offsetof(ApAlgInterfaceOutput, dstMAC), 16U);
    EXPECT_EQ(offsetof(ApAlgInterfaceOutput, algStrategy), 32U);
    EXPECT_EQ(offsetof(ApAlgInterfaceOutput, timeout), 36U);
}

/* ---- Writer ------------------------------------------------------------- */

TEST(ApAlgOutputInfo, writerWritesOneLine)
{
    ApAlgInterfaceOutput output = makeOutput("0A1B2C3D4E5F", "102030405060", ALG_STRATEGY_REDICAL, 30);
    EXPECT_TRUE(apAlgOutputInfoWriter("out", &output));
    EXPECT_STREQ(test::fileText("out"), "0A1B2C3D4E5F 102030405060 2 30\n");
    EXPECT_EQ(test::messageCount(), 0);
}

TEST(ApAlgOutputInfo, writerReplacesTheFile)
{
    test::writeFile("out", "a much longer text that was here before this decision\nand another line\n");
    ApAlgInterfaceOutput output = makeOutput("0A1B2C3D4E5F", "102030405060", ALG_STRATEGY_UNKNOW, 0);
    EXPECT_TRUE(apAlgOutputInfoWriter("out", &output));
    EXPECT_STREQ(test::fileText("out"), "0A1B2C3D4E5F 102030405060 0 0\n");
}

TEST(ApAlgOutputInfo, writerAlignsShortMacsRight)
{
    ApAlgInterfaceOutput output = makeOutput("abc", "", ALG_STRATEGY_CAREFUL, 255);
    EXPECT_TRUE(apAlgOutputInfoWriter("out", &output));
    EXPECT_STREQ(test::fileText("out"), "         abc              1 255\n");
}

TEST(ApAlgOutputInfo, writerWritesLongMacsWhole)
{
    ApAlgInterfaceOutput output = makeOutput("ABCDEFGHIJKLMNO", "abcdefghijklmno", ALG_STRATEGY_GET_BEST, 9);
    EXPECT_TRUE(apAlgOutputInfoWriter("out", &output));
    EXPECT_STREQ(test::fileText("out"), "ABCDEFGHIJKLMNO abcdefghijklmno 3 9\n");
}

TEST(ApAlgOutputInfo, writerWritesTheStrategyAsASignedNumber)
{
    ApAlgInterfaceOutput output = makeOutput("0A1B2C3D4E5F", "102030405060", ALG_STRATEGY{4294967295U}, 1);
    EXPECT_TRUE(apAlgOutputInfoWriter("out", &output));
    EXPECT_STREQ(test::fileText("out"), "0A1B2C3D4E5F 102030405060 -1 1\n");
    output.algStrategy = ALG_STRATEGY{2147483648U};
    EXPECT_TRUE(apAlgOutputInfoWriter("out", &output));
    EXPECT_STREQ(test::fileText("out"), "0A1B2C3D4E5F 102030405060 -2147483648 1\n");
    output.algStrategy = ALG_STRATEGY{2147483647U};
    EXPECT_TRUE(apAlgOutputInfoWriter("out", &output));
    EXPECT_STREQ(test::fileText("out"), "0A1B2C3D4E5F 102030405060 2147483647 1\n");
}

TEST(ApAlgOutputInfo, writerLeavesTheRecord)
{
    ApAlgInterfaceOutput output = heldOutput();
    EXPECT_TRUE(apAlgOutputInfoWriter("out", &output));
    EXPECT_TRUE(isHeldOutput(&output));
}

TEST(ApAlgOutputInfo, writerOfAFileThatCannotBeOpenedFailsWithoutAClose)
{
    ApAlgInterfaceOutput output = heldOutput();
    EXPECT_FALSE(apAlgOutputInfoWriter("no/out", &output));
    EXPECT_STREQ(test::messages(), "libzo: [apAlgOutputInfoWriter:#]: fopen error, path: no/out.|");
    EXPECT_EQ(test::callCount(test::CLOSE), 0);
}

TEST(ApAlgOutputInfo, writerLeavesAFileThatItCannotOpen)
{
    test::writeFile("out", "as it was\n");
    ApAlgInterfaceOutput output = heldOutput();
    test::failNth(test::OPEN, 1);
    EXPECT_FALSE(apAlgOutputInfoWriter("out", &output));
    EXPECT_STREQ(test::fileText("out"), "as it was\n");
    EXPECT_EQ(test::callCount(test::OPEN), 1);
}

TEST(ApAlgOutputInfo, writerReportsAFailedOpenFromLevelThree)
{
    ApAlgInterfaceOutput output = heldOutput();
    test::setLevel(3);
    EXPECT_FALSE(apAlgOutputInfoWriter("no/out", &output));
    EXPECT_STREQ(test::messages(), "libzo: [apAlgOutputInfoWriter:#]: fopen error, path: no/out.|");
    test::clearMessages();
    test::setLevel(2);
    EXPECT_FALSE(apAlgOutputInfoWriter("no/out", &output));
    EXPECT_EQ(test::messageCount(), 0);
}

TEST(ApAlgOutputInfo, writerReportsAFailedPrintAndCloses)
{
    ApAlgInterfaceOutput output = heldOutput();
    test::writeFile("out", "as it was\n");
    test::failNth(test::WRITE, 1);
    EXPECT_FALSE(apAlgOutputInfoWriter("out", &output));
    EXPECT_STREQ(test::messages(), "libzo: [apAlgOutputInfoWriter:#]: fprintf error, path: out|");
    EXPECT_STREQ(test::fileText("out"), "");
    EXPECT_EQ(test::callCount(test::CLOSE), 1);
    EXPECT_EQ(test::callCount(test::WRITE), 1);
}

TEST(ApAlgOutputInfo, writerReportsAFailedPrintFromLevelThree)
{
    ApAlgInterfaceOutput output = heldOutput();
    test::failFrom(test::WRITE, 1);
    test::setLevel(3);
    EXPECT_FALSE(apAlgOutputInfoWriter("out", &output));
    EXPECT_STREQ(test::messages(), "libzo: [apAlgOutputInfoWriter:#]: fprintf error, path: out|");
    test::clearMessages();
    test::setLevel(2);
    EXPECT_FALSE(apAlgOutputInfoWriter("out", &output));
    EXPECT_EQ(test::messageCount(), 0);
}

TEST(ApAlgOutputInfo, writerReportsAFailedPrintOnAFullDevice)
{
    ApAlgInterfaceOutput output = heldOutput();
    test::streamBuffer(0);
    EXPECT_FALSE(apAlgOutputInfoWriter("/dev/full", &output));
    EXPECT_STREQ(test::messages(), "libzo: [apAlgOutputInfoWriter:#]: fprintf error, path: /dev/full|");
}

TEST(ApAlgOutputInfo, writerReportsAFailedCloseOnAFullDevice)
{
    ApAlgInterfaceOutput output = heldOutput();
    EXPECT_FALSE(apAlgOutputInfoWriter("/dev/full", &output));
    EXPECT_STREQ(test::messages(), "libzo: [apAlgOutputInfoWriter:#]: fclose error, path:/dev/full.\n|");
}

TEST(ApAlgOutputInfo, writerReportsAFailedClose)
{
    ApAlgInterfaceOutput output = makeOutput("0A1B2C3D4E5F", "102030405060", ALG_STRATEGY_CAREFUL, 4);
    test::failNth(test::CLOSE, 1);
    EXPECT_FALSE(apAlgOutputInfoWriter("out", &output));
    EXPECT_STREQ(test::messages(), "libzo: [apAlgOutputInfoWriter:#]: fclose error, path:out.\n|");
    EXPECT_STREQ(test::fileText("out"), "0A1B2C3D4E5F 102030405060 1 4\n");
}

TEST(ApAlgOutputInfo, writerReportsAFailedCloseFromLevelThree)
{
    ApAlgInterfaceOutput output = heldOutput();
    test::failFrom(test::CLOSE, 1);
    test::setLevel(3);
    EXPECT_FALSE(apAlgOutputInfoWriter("out", &output));
    EXPECT_STREQ(test::messages(), "libzo: [apAlgOutputInfoWriter:#]: fclose error, path:out.\n|");
    test::clearMessages();
    test::setLevel(2);
    EXPECT_FALSE(apAlgOutputInfoWriter("out", &output));
    EXPECT_EQ(test::messageCount(), 0);
}

TEST(ApAlgOutputInfo, writerReportsAFailedCloseAfterAFailedPrint)
{
    ApAlgInterfaceOutput output = heldOutput();
    test::failNth(test::WRITE, 1);
    test::failNth(test::CLOSE, 1);
    EXPECT_FALSE(apAlgOutputInfoWriter("out", &output));
    EXPECT_STREQ(test::messages(), "libzo: [apAlgOutputInfoWriter:#]: fprintf error, path: out|"
                                   "libzo: [apAlgOutputInfoWriter:#]: fclose error, path:out.\n|");
}

/* ---- Reader ------------------------------------------------------------- */

TEST(ApAlgOutputInfo, readerReadsEveryField)
{
    test::writeFile("out", "0A1B2C3D4E5F 102030405060 2 30\n");
    ApAlgInterfaceOutput output = heldOutput();
    EXPECT_TRUE(apAlgOutputInfoReader("out", &output));
    EXPECT_STREQ(output.srcMAC, "0A1B2C3D4E5F");
    EXPECT_STREQ(output.dstMAC, "102030405060");
    EXPECT_EQ(output.algStrategy, 2U);
    EXPECT_EQ(output.timeout, 30);
    EXPECT_EQ(test::messageCount(), 0);
}

TEST(ApAlgOutputInfo, readerOpensAndClosesOnce)
{
    test::writeFile("out", "0A1B2C3D4E5F 102030405060 2 30\n");
    ApAlgInterfaceOutput output = heldOutput();
    EXPECT_TRUE(apAlgOutputInfoReader("out", &output));
    EXPECT_EQ(test::callCount(test::OPEN), 1);
    EXPECT_EQ(test::callCount(test::CLOSE), 1);
}

TEST(ApAlgOutputInfo, writtenRecordsComeBack)
{
    static const ALG_STRATEGY strategies[] = {
        ALG_STRATEGY_UNKNOW, ALG_STRATEGY_CAREFUL, ALG_STRATEGY_REDICAL, ALG_STRATEGY_GET_BEST,
        ALG_STRATEGY{2147483647U}, ALG_STRATEGY{2147483648U}, ALG_STRATEGY{4294967295U}};
    int timeout = 249;
    for (ALG_STRATEGY strategy : strategies) {
        ApAlgInterfaceOutput written = makeOutput("0A1B2C3D4E5F", "102030405060", strategy, timeout);
        ApAlgInterfaceOutput read = heldOutput();
        EXPECT_TRUE(apAlgOutputInfoWriter("out", &written));
        EXPECT_TRUE(apAlgOutputInfoReader("out", &read));
        EXPECT_STREQ(read.srcMAC, "0A1B2C3D4E5F");
        EXPECT_STREQ(read.dstMAC, "102030405060");
        EXPECT_EQ(read.algStrategy, strategy);
        EXPECT_EQ(read.timeout, timeout);
        ++timeout;
    }
    EXPECT_EQ(timeout, 256);
}

TEST(ApAlgOutputInfo, readerTakesTheStrategyAsAnUnsignedNumber)
{
    test::writeFile("out", "0A1B2C3D4E5F 102030405060 4294967295 255\n");
    ApAlgInterfaceOutput output = heldOutput();
    EXPECT_TRUE(apAlgOutputInfoReader("out", &output));
    EXPECT_EQ(output.algStrategy, 4294967295U);
    EXPECT_EQ(output.timeout, 255);
}

TEST(ApAlgOutputInfo, readerTakesDecimalsWithLeadingZeros)
{
    test::writeFile("out", "0A1B2C3D4E5F 102030405060 010 011\n");
    ApAlgInterfaceOutput output = heldOutput();
    EXPECT_TRUE(apAlgOutputInfoReader("out", &output));
    EXPECT_EQ(output.algStrategy, 10U);
    EXPECT_EQ(output.timeout, 11);
}

TEST(ApAlgOutputInfo, readerTakesTheFirstOfTwoLines)
{
    test::writeFile("out", "0A1B2C3D4E5F 102030405060 1 20\nA0A1A2A3A4A5 B0B1B2B3B4B5 3 40\n");
    ApAlgInterfaceOutput output = heldOutput();
    EXPECT_TRUE(apAlgOutputInfoReader("out", &output));
    EXPECT_STREQ(output.srcMAC, "0A1B2C3D4E5F");
    EXPECT_STREQ(output.dstMAC, "102030405060");
    EXPECT_EQ(output.algStrategy, 1U);
    EXPECT_EQ(output.timeout, 20);
}

TEST(ApAlgOutputInfo, readerDoesNotLookAtABlankSecondLine)
{
    test::writeFile("out", "0A1B2C3D4E5F 102030405060 1 20\n\n");
    ApAlgInterfaceOutput output = heldOutput();
    EXPECT_TRUE(apAlgOutputInfoReader("out", &output));
    EXPECT_EQ(output.timeout, 20);
    EXPECT_EQ(test::messageCount(), 0);
}

TEST(ApAlgOutputInfo, readerTakesALineWithoutNewline)
{
    test::writeFile("out", "0A1B2C3D4E5F 102030405060 1 20");
    ApAlgInterfaceOutput output = heldOutput();
    EXPECT_TRUE(apAlgOutputInfoReader("out", &output));
    EXPECT_EQ(output.algStrategy, 1U);
    EXPECT_EQ(output.timeout, 20);
}

TEST(ApAlgOutputInfo, readerTakesAnyBlanksBetweenFields)
{
    test::writeFile("out", "  \t0A1B2C3D4E5F\t 102030405060   1\t20  \n");
    ApAlgInterfaceOutput output = heldOutput();
    EXPECT_TRUE(apAlgOutputInfoReader("out", &output));
    EXPECT_STREQ(output.srcMAC, "0A1B2C3D4E5F");
    EXPECT_STREQ(output.dstMAC, "102030405060");
    EXPECT_EQ(output.algStrategy, 1U);
    EXPECT_EQ(output.timeout, 20);
}

TEST(ApAlgOutputInfo, readerTakesTwelveCharactersOfAMac)
{
    test::writeFile("out", "0A1B2C3D4E5F102030405060123 4\n");
    ApAlgInterfaceOutput output = heldOutput();
    EXPECT_TRUE(apAlgOutputInfoReader("out", &output));
    EXPECT_STREQ(output.srcMAC, "0A1B2C3D4E5F");
    EXPECT_STREQ(output.dstMAC, "102030405060");
    EXPECT_EQ(output.algStrategy, 123U);
    EXPECT_EQ(output.timeout, 4);
}

TEST(ApAlgOutputInfo, readerKeepsTheFieldsThatALineDoesNotReach)
{
    test::writeFile("out", "0A1B2C3D4E5F\n");
    ApAlgInterfaceOutput output = heldOutput();
    EXPECT_TRUE(apAlgOutputInfoReader("out", &output));
    EXPECT_STREQ(output.srcMAC, "0A1B2C3D4E5F");
    EXPECT_STREQ(output.dstMAC, "dstHeld");
    EXPECT_EQ(output.algStrategy, 77U);
    EXPECT_EQ(output.timeout, 99);

    test::writeFile("out", "A0A1A2A3A4A5 B0B1B2B3B4B5 5\n1 2 3 4\n");
    EXPECT_TRUE(apAlgOutputInfoReader("out", &output));
    EXPECT_STREQ(output.srcMAC, "A0A1A2A3A4A5");
    EXPECT_STREQ(output.dstMAC, "B0B1B2B3B4B5");
    EXPECT_EQ(output.algStrategy, 5U);
    EXPECT_EQ(output.timeout, 99);
    EXPECT_EQ(test::messageCount(), 0);
}

TEST(ApAlgOutputInfo, readerStopsAtAFieldThatDoesNotConvert)
{
    test::writeFile("out", "0A1B2C3D4E5F 102030405060 x 20\n");
    ApAlgInterfaceOutput output = heldOutput();
    EXPECT_TRUE(apAlgOutputInfoReader("out", &output));
    EXPECT_STREQ(output.dstMAC, "102030405060");
    EXPECT_EQ(output.algStrategy, 77U);
    EXPECT_EQ(output.timeout, 99);
    EXPECT_EQ(test::messageCount(), 0);
}

TEST(ApAlgOutputInfo, readerTakesAtMost1023CharactersAsTheLine)
{
    writeAfterBlanks("out", 1020, "0A1B2C3D4E5F 102030405060 1 20\n");
    ApAlgInterfaceOutput output = heldOutput();
    EXPECT_TRUE(apAlgOutputInfoReader("out", &output));
    EXPECT_STREQ(output.srcMAC, "0A1");
    EXPECT_STREQ(output.dstMAC, "dstHeld");
    EXPECT_EQ(output.algStrategy, 77U);
    EXPECT_EQ(output.timeout, 99);
}

TEST(ApAlgOutputInfo, readerTakesALineOf1023Characters)
{
    writeAfterBlanks("out", 993, "0A1B2C3D4E5F 102030405060 1 20\n");
    ApAlgInterfaceOutput output = heldOutput();
    EXPECT_TRUE(apAlgOutputInfoReader("out", &output));
    EXPECT_EQ(output.algStrategy, 1U);
    EXPECT_EQ(output.timeout, 20);
}

TEST(ApAlgOutputInfo, readerFailsOn1023LeadingBlanks)
{
    writeAfterBlanks("out", 1023, "0A1B2C3D4E5F 102030405060 1 20\n");
    ApAlgInterfaceOutput output = heldOutput();
    EXPECT_FALSE(apAlgOutputInfoReader("out", &output));
    EXPECT_TRUE(isHeldOutput(&output));
    EXPECT_STREQ(test::messages(), "libzo: [apAlgOutputInfoReader:#]: sscanf error, path: out.\n|");
}

TEST(ApAlgOutputInfo, readerOfAnEmptyFileReadsNothingAndSucceeds)
{
    test::writeFile("out", "");
    ApAlgInterfaceOutput output = heldOutput();
    EXPECT_TRUE(apAlgOutputInfoReader("out", &output));
    EXPECT_TRUE(isHeldOutput(&output));
    EXPECT_EQ(test::messageCount(), 0);
}

TEST(ApAlgOutputInfo, readerOfADirectoryReadsNothingAndSucceeds)
{
    mkdir("out", 0777);
    ApAlgInterfaceOutput output = heldOutput();
    EXPECT_TRUE(apAlgOutputInfoReader("out", &output));
    EXPECT_TRUE(isHeldOutput(&output));
    EXPECT_EQ(test::messageCount(), 0);
}

TEST(ApAlgOutputInfo, readerTakesAReadErrorAsAnEmptyFile)
{
    test::writeFile("out", "0A1B2C3D4E5F 102030405060 1 20\n");
    ApAlgInterfaceOutput output = heldOutput();
    test::failNth(test::READ, 1);
    EXPECT_TRUE(apAlgOutputInfoReader("out", &output));
    EXPECT_TRUE(isHeldOutput(&output));
    EXPECT_EQ(test::messageCount(), 0);
}

TEST(ApAlgOutputInfo, readerFailsOnAnEmptyFirstLine)
{
    test::writeFile("out", "\n0A1B2C3D4E5F 102030405060 1 20\n");
    ApAlgInterfaceOutput output = heldOutput();
    EXPECT_FALSE(apAlgOutputInfoReader("out", &output));
    EXPECT_TRUE(isHeldOutput(&output));
    EXPECT_STREQ(test::messages(), "libzo: [apAlgOutputInfoReader:#]: sscanf error, path: out.\n|");
    EXPECT_EQ(test::callCount(test::CLOSE), 1);
}

TEST(ApAlgOutputInfo, readerFailsOnABlankFirstLine)
{
    test::writeFile("out", " \t \n0A1B2C3D4E5F 102030405060 1 20\n");
    ApAlgInterfaceOutput output = heldOutput();
    EXPECT_FALSE(apAlgOutputInfoReader("out", &output));
    EXPECT_TRUE(isHeldOutput(&output));
    EXPECT_STREQ(test::messages(), "libzo: [apAlgOutputInfoReader:#]: sscanf error, path: out.\n|");
}

TEST(ApAlgOutputInfo, readerFailsOnALineThatStartsWithANul)
{
    test::writeBytes("out", "\0 0A1B2C3D4E5F 102030405060 1 20\n", 33);
    ApAlgInterfaceOutput output = heldOutput();
    EXPECT_FALSE(apAlgOutputInfoReader("out", &output));
    EXPECT_TRUE(isHeldOutput(&output));
    EXPECT_STREQ(test::messages(), "libzo: [apAlgOutputInfoReader:#]: sscanf error, path: out.\n|");
}

TEST(ApAlgOutputInfo, readerReportsAnEmptyFirstLineFromLevelThree)
{
    test::writeFile("out", "\n");
    ApAlgInterfaceOutput output = heldOutput();
    test::setLevel(3);
    EXPECT_FALSE(apAlgOutputInfoReader("out", &output));
    EXPECT_STREQ(test::messages(), "libzo: [apAlgOutputInfoReader:#]: sscanf error, path: out.\n|");
    test::clearMessages();
    test::setLevel(2);
    EXPECT_FALSE(apAlgOutputInfoReader("out", &output));
    EXPECT_EQ(test::messageCount(), 0);
}

TEST(ApAlgOutputInfo, readerOfAMissingFileFails)
{
    ApAlgInterfaceOutput output = heldOutput();
    EXPECT_FALSE(apAlgOutputInfoReader("out", &output));
    EXPECT_TRUE(isHeldOutput(&output));
    EXPECT_STREQ(test::messages(), "libzo: [apAlgOutputInfoReader:#]: Failed to read file : out.\n|");
    EXPECT_STREQ(test::fileText("out"), "<missing>");
    EXPECT_EQ(test::callCount(test::CLOSE), 0);
}

TEST(ApAlgOutputInfo, readerReportsAMissingFileFromLevelThree)
{
    ApAlgInterfaceOutput output = heldOutput();
    test::setLevel(3);
    EXPECT_FALSE(apAlgOutputInfoReader("out", &output));
    EXPECT_STREQ(test::messages(), "libzo: [apAlgOutputInfoReader:#]: Failed to read file : out.\n|");
    test::clearMessages();
    test::setLevel(2);
    EXPECT_FALSE(apAlgOutputInfoReader("out", &output));
    EXPECT_EQ(test::messageCount(), 0);
}

TEST(ApAlgOutputInfo, readerReportsAFailedCloseAndKeepsWhatItRead)
{
    test::writeFile("out", "0A1B2C3D4E5F 102030405060 1 20\n");
    ApAlgInterfaceOutput output = heldOutput();
    test::failNth(test::CLOSE, 1);
    EXPECT_FALSE(apAlgOutputInfoReader("out", &output));
    EXPECT_STREQ(test::messages(), "libzo: [apAlgOutputInfoReader:#]: fclose error, path: out.\n|");
    EXPECT_STREQ(output.srcMAC, "0A1B2C3D4E5F");
    EXPECT_EQ(output.timeout, 20);
}

TEST(ApAlgOutputInfo, readerReportsAFailedCloseOfAnEmptyFile)
{
    test::writeFile("out", "");
    ApAlgInterfaceOutput output = heldOutput();
    test::failNth(test::CLOSE, 1);
    EXPECT_FALSE(apAlgOutputInfoReader("out", &output));
    EXPECT_STREQ(test::messages(), "libzo: [apAlgOutputInfoReader:#]: fclose error, path: out.\n|");
}

TEST(ApAlgOutputInfo, readerReportsAFailedCloseFromLevelThree)
{
    test::writeFile("out", "0A1B2C3D4E5F 102030405060 1 20\n");
    ApAlgInterfaceOutput output = heldOutput();
    test::failFrom(test::CLOSE, 1);
    test::setLevel(3);
    EXPECT_FALSE(apAlgOutputInfoReader("out", &output));
    EXPECT_STREQ(test::messages(), "libzo: [apAlgOutputInfoReader:#]: fclose error, path: out.\n|");
    test::clearMessages();
    test::setLevel(2);
    EXPECT_FALSE(apAlgOutputInfoReader("out", &output));
    EXPECT_EQ(test::messageCount(), 0);
}

TEST(ApAlgOutputInfo, readerLeavesTheFile)
{
    test::writeFile("out", "0A1B2C3D4E5F 102030405060 1 20\nmore\n");
    ApAlgInterfaceOutput output = heldOutput();
    EXPECT_TRUE(apAlgOutputInfoReader("out", &output));
    EXPECT_STREQ(test::fileText("out"), "0A1B2C3D4E5F 102030405060 1 20\nmore\n");
}
