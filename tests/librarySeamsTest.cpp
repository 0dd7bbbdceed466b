/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The places where C libraries differ, or are free to: what the module does
 * there is the same on each. The other tests keep to one family; these go
 * through whichever family shows a place best.
 */
#include "scenario.h"

#include <limits.h>
#include <stdint.h>
#include <sys/stat.h>

#include "dataInterface/shared/records.h"

/* ---- Allocations -------------------------------------------------------- */

TEST(LibrarySeams, anArrayOfNoRecordsIsAnArray)
{
    void* records = alg_internal::allocateBytes(0, 0, 16);
    EXPECT_TRUE(records != nullptr);
    free(records);
}

TEST(LibrarySeams, aSizeThatOverflowsIsNotAllocated)
{
    EXPECT_TRUE(alg_internal::allocateBytes(2, 0, SIZE_MAX / 2 + 1) == nullptr);
    EXPECT_TRUE(alg_internal::allocateBytes(1, 1, SIZE_MAX / 2 + 1) == nullptr);
    EXPECT_TRUE(alg_internal::allocateBytes(INT_MAX, 0, SIZE_MAX / 4) == nullptr);
    EXPECT_TRUE(alg_internal::allocateBytes(0, INT_MAX, SIZE_MAX / 4) == nullptr);
}

TEST(LibrarySeams, aCountThatOverflowsIsNotAllocated)
{
    EXPECT_TRUE(alg_internal::allocateBytes(INT_MAX, 1, 1) == nullptr);
    EXPECT_TRUE(alg_internal::allocateBytes(1, INT_MAX, 1) == nullptr);
    EXPECT_EQ(0, test::callCount(test::ALLOCATE));
    char array[1];
    EXPECT_TRUE(alg_internal::growBytes(array, INT_MAX, 1) == nullptr);
    EXPECT_EQ(0, test::callCount(test::GROW));
}

TEST(LibrarySeams, deleteFromAnEmptyFileAllocatesAndFindsNothing)
{
    char mac[] = "aabbccddee01";
    test::writeFile("f", "");
    EXPECT_FALSE(deleteSingleApAllInfo("f", mac));
    EXPECT_EQ(1, test::callCount(test::ALLOCATE));
    EXPECT_MESSAGES("E deleteSingleApAllInfo: Cannot find the mac in the ap info.");
}

#if SIZE_MAX == UINT32_MAX
/* The count fits an int, its size in bytes does not fit this machine. */
TEST(LibrarySeams, anAppendTooLargeForTheMachineLeavesTheFile)
{
    static const char line[] = "aabbccddee01 aabbccddee02  1   6  40\n";
    ScanningInfo scan = {};
    test::writeFile("f", line);
    EXPECT_FALSE(appendScanningInfo("f", &scan, INT_MAX - 1));
    EXPECT_MESSAGES("E appendScanningInfo: Failed to allocate memory for ScanningInfo");
    EXPECT_STREQ(line, test::fileText("f"));
}
#endif

/* ---- Numbers ------------------------------------------------------------ */

/* What a field of 8 bits and one of 16 bits make of a text; 77 and 777 stay where nothing is read. */
static CandidateAp readNumbers(const char* eight, const char* sixteen)
{
    CandidateAp ap = {};
    ap.rssi = 77;
    ap.throughput = 777;
    char line[128];
    snprintf(line, sizeof line, "aabbccddee01 1 1 %s %s 4 5 6 7\n", eight, sixteen);
    test::writeFile("f", line);
    EXPECT_TRUE(candidateApNodeInfoReader("f", &ap));
    return ap;
}

static void expectNumbers(const char* eight, int rssi, const char* sixteen, int throughput)
{
    const CandidateAp ap = readNumbers(eight, sixteen);
    EXPECT_EQ(rssi, ap.rssi);
    EXPECT_EQ(throughput, ap.throughput);
}

TEST(LibrarySeams, aNumberTooWideForItsFieldIsCutToIt)
{
    expectNumbers("255", 255, "65535", 65535);
    expectNumbers("256", 0, "65536", 0);
    expectNumbers("511", 255, "131071", 65535);
    expectNumbers("65537", 1, "65537", 1);
    expectNumbers("4294967295", 255, "4294967295", 65535);
    expectNumbers("4294967038", 254, "4294901761", 1);
}

TEST(LibrarySeams, aNegativeNumberIsCutToItsField)
{
    expectNumbers("-1", 255, "-1", 65535);
    expectNumbers("-256", 0, "-65536", 0);
    expectNumbers("-0", 0, "+12", 12);
}

/*
 * Past 32 bits a C library may cut or saturate, by the width of its long. No
 * other value comes out of it, and the fields after it are read.
 */
TEST(LibrarySeams, aNumberPastThirtyTwoBitsIsCutOrSaturated)
{
    const CandidateAp ap = readNumbers("4294967296", "4294967296");
    EXPECT_TRUE(ap.rssi == 0 || ap.rssi == 255);
    EXPECT_TRUE(ap.throughput == 0 || ap.throughput == 65535);
    EXPECT_EQ(7, ap.mimo);
}

TEST(LibrarySeams, aNumberPastEveryIntegerSaturates)
{
    expectNumbers("18446744073709551616", 255, "18446744073709551616", 65535);
    expectNumbers("99999999999999999999999999999999", 255, "99999999999999999999999999999999", 65535);
}

TEST(LibrarySeams, leadingZerosAreDecimal)
{
    expectNumbers("010", 10, "0000000000000000000000000000000000000099", 99);
}

TEST(LibrarySeams, aHexadecimalPrefixEndsANumber)
{
    const CandidateAp ap = readNumbers("0x10", "5");
    EXPECT_EQ(0, ap.rssi);         /* the 0 */
    EXPECT_EQ(777, ap.throughput); /* the x is no number, and ends the line */
}

TEST(LibrarySeams, aLoneSignInALineEndsTheLine)
{
    static const char* const signs[] = {"-", "+", "--5", "+-5"};
    for (const char* sign : signs) {
        const CandidateAp ap = readNumbers(sign, "5");
        EXPECT_EQ(1, ap.roamingAvailable);
        EXPECT_EQ(77, ap.rssi);
        EXPECT_EQ(777, ap.throughput);
    }
}

/* A stream goes on after the sign. */
TEST(LibrarySeams, aLoneSignInAStreamUsesUpOneField)
{
    static const char* const texts[] = {"aabbccddee01 - 7 8", "aabbccddee01 + 7 8", "aabbccddee01 -\n7\n8"};
    for (const char* text : texts) {
        TimeDelayInfo info = {};
        info.delayTime[0] = 500;
        test::writeFile("f", text);
        EXPECT_TRUE(timeDelayInfoReader("f", &info, 1));
        EXPECT_EQ(500, info.delayTime[0]);
        EXPECT_EQ(7, info.delayTime[1]);
        EXPECT_EQ(8, info.delayTime[2]);
    }
}

/* At the end of the file a sign is still no end: the first read after it is. */
TEST(LibrarySeams, aLoneSignAtTheEndOfAStreamIsNotTheEnd)
{
    TimeDelayInfo info = {};
    test::writeFile("f", "aabbccddee01");
    EXPECT_TRUE(timeDelayInfoReader("f", &info, 1));
    const int afterTheMac = test::messageCount();
    test::clearMessages();
    test::writeFile("f", "aabbccddee01 -");
    EXPECT_TRUE(timeDelayInfoReader("f", &info, 1));
    EXPECT_EQ(afterTheMac - 1, test::messageCount()); /* not for the sample that is a sign */
    EXPECT_LT(0, afterTheMac);
}

/* ---- Floats ------------------------------------------------------------- */

/* The hop factor and the time of a score line, 5.0 where it has none. */
static ScoreInfo readFloats(const char* first, const char* second)
{
    ScoreInfo score = {};
    score.hopsFactor = 5.0F;
    score.timeNormalization = 5.0F;
    char line[512];
    snprintf(line, sizeof line, "aabbccddee01 1 %s 2 3 %s 4  1 2 3 4 5  1 2 3 4 5  1 2 3 4 9\n", first,
             second);
    test::writeFile("f", line);
    EXPECT_TRUE(scoreInfoReader("f", &score, 1));
    return score;
}

TEST(LibrarySeams, infinitiesAndNotANumberAreRead)
{
    static const char* const texts[] = {"inf", "INF", "Inf", "infinity", "+inf"};
    for (const char* text : texts) {
        const ScoreInfo score = readFloats(text, text);
        EXPECT_TRUE(__builtin_isinf(score.hopsFactor) && score.hopsFactor > 0);
        EXPECT_TRUE(__builtin_isinf(score.timeNormalization) && score.timeNormalization > 0);
        EXPECT_EQ(9, score.patRate[4]);
    }
    static const char* const others[] = {"nan", "NaN", "-nan"};
    for (const char* text : others) {
        const ScoreInfo score = readFloats(text, "-inf");
        EXPECT_TRUE(__builtin_isnan(score.hopsFactor));
        EXPECT_TRUE(__builtin_isinf(score.timeNormalization) && score.timeNormalization < 0);
        EXPECT_EQ(9, score.patRate[4]);
    }
}

TEST(LibrarySeams, aFloatPastItsRangeIsInfinityOrZero)
{
    const ScoreInfo score = readFloats("1e999", "1e-999");
    EXPECT_TRUE(__builtin_isinf(score.hopsFactor));
    EXPECT_TRUE(score.timeNormalization == 0.0F);
    EXPECT_EQ(9, score.patRate[4]);
}

TEST(LibrarySeams, aLoneSignOrPointIsNoFloat)
{
    static const char* const texts[] = {"-", "+", ".", "-."};
    for (const char* text : texts)
        EXPECT_TRUE(readFloats(text, "1.5").hopsFactor == 5.0F);
}

TEST(LibrarySeams, aLoneSignAtTheEndOfAStreamIsNoFloat)
{
    ScoreInfo score = {};
    score.hopsFactor = 5.0F;
    test::writeFile("f", "aabbccddee01 1 -");
    EXPECT_TRUE(scoreInfoReader("f", &score, 1));
    EXPECT_EQ(1, score.apRank);
    EXPECT_EQ(5.0F, score.hopsFactor);
    EXPECT_EQ(15, test::messageCount()); /* the array values, which the file does not reach */
}

/*
 * A value is printed as a double. IEEE 754 leaves the sign of a NaN open when a float is
 * converted to a double: ARM and x86 keep it, MIPS and RISC-V drop it.
 */
static bool conversionKeepsSignOfNan()
{
    volatile float narrow = -__builtin_nanf("");
    const volatile double wide = static_cast<double>(narrow);
    return __builtin_signbit(wide) != 0;
}

TEST(LibrarySeams, infinitiesAndNotANumberAreWritten)
{
    ScoreInfo scores[2] = {};
    strcpy(scores[0].fatherMAC, "aabbccddee01");
    scores[0].hopsFactor = __builtin_inff();
    scores[0].timeNormalization = -__builtin_inff();
    strcpy(scores[1].fatherMAC, "aabbccddee02");
    scores[1].hopsFactor = __builtin_nanf("");
    scores[1].timeNormalization = -__builtin_nanf("");
    EXPECT_TRUE(scoreInfoWriter("f", scores, 2));
    EXPECT_EQ(0, strncmp(test::fileLine("f", 0), "aabbccddee01  0 inf  0    0 -inf    0  0", 40));
    const char* const line = conversionKeepsSignOfNan() ? "aabbccddee02  0 nan  0    0 -nan    0  0"
                                                        : "aabbccddee02  0 nan  0    0 nan    0  0";
    EXPECT_EQ(0, strncmp(test::fileLine("f", 1), line, strlen(line)));
}

/* Halves of the second decimal, and a value of all digits: exact in binary, rounded to even. */
TEST(LibrarySeams, floatsAreWrittenExactly)
{
    ScoreInfo scores[2] = {};
    strcpy(scores[0].fatherMAC, "aabbccddee01");
    scores[0].hopsFactor = 0.125F;
    scores[0].timeNormalization = 0.375F;
    strcpy(scores[1].fatherMAC, "aabbccddee02");
    scores[1].hopsFactor = 3.40282347e+38F;
    scores[1].timeNormalization = -0.0F;
    EXPECT_TRUE(scoreInfoWriter("f", scores, 2));
    EXPECT_EQ(0, strncmp(test::fileLine("f", 0), "aabbccddee01  0 0.12  0    0 0.38    0", 38));
    EXPECT_EQ(0,
              strncmp(test::fileLine("f", 1),
                      "aabbccddee02  0 340282346638528859811704183484516925440.00  0    0 -0.00    0", 76));
}

/* ---- A directory in place of a file ------------------------------------- */

/* It opens for reading, and every read of it fails: it is an empty file that cannot be written. */
TEST(LibrarySeams, aDirectoryReadsAsAnEmptyFile)
{
    mkdir("d", 0777);
    EXPECT_EQ(0, dataLineCounter("d"));
    EXPECT_TRUE(touchFile("d"));
    EXPECT_EQ(1, scoreInfoCntReader("d"));
    ApRank rank = {};
    EXPECT_TRUE(apRankInfoReader("d", &rank));
    EXPECT_STREQ("", test::messages());
}

TEST(LibrarySeams, aStreamFromADirectoryIsAtItsEnd)
{
    mkdir("d", 0777);
    ApNodeV2 node = {};
    char macs[1][16];
    EXPECT_FALSE(apNodeInfoReaderV2("d", 1, &node, macs));
    EXPECT_MESSAGES("E apNodeInfoReaderV2: sscanf error part 1, path: d\n");
    test::clearMessages();
    TimeDelayInfo info = {};
    EXPECT_TRUE(timeDelayInfoReader("d", &info, 1));
    EXPECT_MESSAGES("E timeDelayInfoReader: sscanf error, path: d.\n");
}

TEST(LibrarySeams, aDirectoryCannotBeUpdated)
{
    mkdir("d", 0777);
    ScanningInfo scan = {};
    EXPECT_FALSE(appendSingleScanningInfo("d", &scan));
    EXPECT_MESSAGES("I appendSingleScanningInfo: Just save income scanning data",
                    "E scanningInfoWriter: Failed to write file: d.\n",
                    "E appendSingleScanningInfo: Failed to write to file: d");
}

/* ---- A full device ------------------------------------------------------ */

/* What fits the stream's buffer fails at the close alone, and the family's rule for the close decides. */
TEST(LibrarySeams, aShortFileOnAFullDeviceFailsAtTheClose)
{
    ScanningInfo scan = {};
    EXPECT_FALSE(scanningInfoWriter("/dev/full", &scan, 1));
    EXPECT_MESSAGES("E scanningInfoWriter: fclose error, path:/dev/full.\n");
    test::clearMessages();
    BridgingNodeV2 node = {};
    EXPECT_TRUE(bridgingApNodeInfoWriter("/dev/full", &node, 1)); /* its close is not looked at */
    EXPECT_STREQ("", test::messages());
    TimeDelayInfo info = {};
    strcpy(info.fatherMAC, "aabbccddee01");
    EXPECT_FALSE(timeDelayInfoWriter("/dev/full", &info, 1));
    EXPECT_MESSAGES("E timeDelayInfoWriter: fclose error, path:/dev/full.\n");
}

/* No buffer holds 64 KB: a print fails, and whether the close then fails too is the C library's. */
TEST(LibrarySeams, aLongFileOnAFullDeviceFailsAtAPrint)
{
    static BridgingNodeV2 nodes[600];
    EXPECT_FALSE(bridgingApNodeInfoWriter("/dev/full", nodes, 600));
    EXPECT_MESSAGES("E bridgingApNodeInfoWriter: fprintf error, path:/dev/full.\n");
    test::clearMessages();
    static ApRank ranks[2000];
    EXPECT_FALSE(apRankInfoWriter("/dev/full", ranks, 2000));
    EXPECT_TRUE(test::isFirstMessage("E apRankInfoWriter: fprintf error, path: /dev/full"));
}

/* Without a buffer every print reaches the device, the first one too. */
TEST(LibrarySeams, anUnbufferedFileOnAFullDeviceFailsAtItsFirstPrint)
{
    test::streamBuffer(0);
    CandidateAp ap = {};
    EXPECT_FALSE(candidateApNodeInfoWriter("/dev/full", &ap, 1));
    EXPECT_MESSAGES("E candidateApNodeInfoWriter: fclose error, path:/dev/full.\n");
    test::clearMessages();
    ApNodeV2 node = {};
    EXPECT_FALSE(apNodeInfoWriterV2("/dev/full", 1, &node));
    EXPECT_MESSAGES("E apNodeInfoWriterV2: fprintf error, path: /dev/full");
}
