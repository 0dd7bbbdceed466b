/* SPDX-License-Identifier: Apache-2.0 */
/* The kind that is detected from a content, and content that is not a record file. */
#include <gtest/gtest.h>
#include <string>

#include "reading/detect.h"

namespace
{

using namespace algdata;

const std::string sighting = "a4c3f0000010 a4c3f0000011  0   6  33\n";
const std::string delay = "a4c3f0000010  30  38  20  29  25  27  17  12   8  14  12  17  17   3  34\n";
const std::string ranked = "a4c3f0000010 a4c3f0000011 1 900\n";

/* The name of the kind, "?" if several match, "-" for a file that is not a record file, otherwise empty. */
std::string kindOf(const std::string& text)
{
    const Detection detection = detectKind(text);
    if (detection.kind != nullptr)
        return detection.kind->name;
    return detection.content == Content::Records ? "?" : detection.content == Content::Other ? "-" : "";
}

std::string times(size_t count, const std::string& text)
{
    std::string all;
    while (count-- > 0)
        all += text;
    return all;
}

TEST(DetectTest, AKindNeedsMacsWhereItHasMacs)
{
    EXPECT_EQ(kindOf("a4c3f0000010 0 1 178 319 5 2 9 2\n"), "candidate");
    EXPECT_EQ(kindOf("000000000000 0 1 178 319 5 2 9 2\n"), "candidate");
    EXPECT_EQ(kindOf("word 0 1 178 319 5 2 9 2\n"), "-");
    EXPECT_EQ(kindOf("17 0 1 178 319 5 2 9 2\n"), "-");
    EXPECT_EQ(kindOf("a4:c3:f0:00:00:10 0 1 178 319 5 2 9 2\n"), "-");
}

TEST(DetectTest, AKindNeedsNumbersWhereItHasNumbers)
{
    EXPECT_EQ(kindOf(times(9, delay)), "time-delay");
    EXPECT_EQ(kindOf("a4c3f0000010 this line has sixteen words as well but it is no set of delays at all\n"),
              "-");
    EXPECT_EQ(kindOf("a4c3f0000010 a4c3f0000011 up\n"), "-");
}

TEST(DetectTest, UpToAThirdOfTheLinesCanBeOfAnotherForm)
{
    const std::string other = "and now for something completely different\n";
    EXPECT_EQ(kindOf(other + sighting + sighting), "scanning");
    EXPECT_EQ(kindOf(other + other + sighting + sighting + sighting), "-");
    EXPECT_EQ(kindOf(times(100, other) + times(200, sighting)), "scanning");
    EXPECT_EQ(kindOf(times(101, other) + times(200, sighting)), "-");
}

TEST(DetectTest, ADamagedLineStillMatches)
{
    EXPECT_EQ(kindOf("a4c3f0000010 a4c3f0 0 6 33\n"), "scanning") << "a short MAC";
    EXPECT_EQ(kindOf("a4c3f0000010              0   6  33\n"), "scanning") << "an empty MAC";
    EXPECT_EQ(kindOf("a4c3f0000010 a4c3f0000011 0 six 33\n"), "scanning") << "no number";
    EXPECT_EQ(kindOf("a4c3f0000010 a4c3f0000011 0 6 33 7\n"), "scanning") << "a field too many";
    EXPECT_EQ(kindOf("a4c3f0000010 a4c3f0 0 six 33\n"), "-") << "two of five fields";
    EXPECT_EQ(kindOf("  0 5c969d0000a1 a4c3f0000010  1   43  866  574 2945 229"), "station") << "cut off";
    EXPECT_EQ(kindOf(delay.substr(0, 40)), "?") << "of this much it can be candidate as well";
    EXPECT_EQ(kindOf("0a4e00000004 0a4e00000002 2 "), "?") << "ap-rank, or cut off after three fields";
    EXPECT_EQ(kindOf("0a4e00000004 0a4e00000002 2\n"), "ap-rank");
}

TEST(DetectTest, AKindWithFewFieldsNeedsOneCompleteLine)
{
    EXPECT_EQ(kindOf("a4c3f0000010 a4c3f0000011\n"), "-");
    EXPECT_EQ(kindOf("a4c3f0000010 a4c3f0000011 1\na4c3f0000010 a4c3f0000011\n"), "ap-rank");
}

TEST(DetectTest, TheKindWithMoreCompleteLinesWins)
{
    const std::string node =
        "a4c3f0000010 000000000000 46 24 55 0 0 10 5 574 574 574 0 0 481 425 560 0 0 0 1000 "
        "0 0 0 0 0\n";
    const std::string bridging =
        "a4c3f0000011 a4c3f0000010 39 1201 866 9 7 56 1201 866 9 7 44 1201 866 9 7 0 0 0 0 "
        "0 0 0 0 0 0 \n";
    EXPECT_EQ(kindOf(node + node + bridging), "ap-node");
    EXPECT_EQ(kindOf(node + bridging + bridging), "bridging");
    EXPECT_EQ(kindOf(node + bridging), "?");
}

TEST(DetectTest, AnIndexIsDetectedByItsHeader)
{
    EXPECT_EQ(kindOf("1 1 2 1700000000\n" + ranked), "ap-rank-index");
    EXPECT_EQ(kindOf("1 1 x 1700000000\n" + times(3, ranked)), "ap-rank-index");
    EXPECT_EQ(kindOf(times(3, ranked)), "?");
    EXPECT_EQ(kindOf(ranked), "alg-output");
}

TEST(DetectTest, ASingleFirstLineNeedsACountOfZero)
{
    EXPECT_EQ(kindOf("0 0 0 0\n"), "ap-rank-index");
    EXPECT_EQ(kindOf("0 1 2 1700000000\n"), "ap-rank-index");
    EXPECT_EQ(kindOf("4 4 1 7\n"), "-");
    EXPECT_EQ(kindOf("0 1 9 1700000000\n"), "-") << "no such strategy";
    EXPECT_EQ(kindOf("0\n"), "pat-v2");
    EXPECT_EQ(kindOf("1234\n"), "-");
}

TEST(DetectTest, ADecisionThatMovesNothingHasMacsOfZeros)
{
    EXPECT_EQ(kindOf("000000000000 000000000000 0 0\n"), "alg-output");
}

TEST(DetectTest, APatFileHasDevices)
{
    const std::string entries = "0 0 1 0 64 46094\n0 0 1 1 64 46094\n";
    EXPECT_EQ(kindOf("1\na4c3f0000010 2\n" + entries), "pat-v2");
    EXPECT_EQ(kindOf("a4c3f0000010 2\n" + entries), "pat-v2") << "without its count line";
    EXPECT_EQ(kindOf("1\na4c3f0000010 0\n"), "pat-v2");
    EXPECT_EQ(kindOf(entries), "-");
    EXPECT_EQ(kindOf("1\n" + entries), "-");
    EXPECT_EQ(kindOf("a4c3f0000010 2\n"), "-");
}

TEST(DetectTest, AStreamMayHaveAnyLines)
{
    const std::string record = "a4c3f0000010" + times(200, " 17");
    EXPECT_EQ(kindOf(record + "\n"), "pat-v1");
    EXPECT_EQ(kindOf("a4c3f0000010" + times(200, "\n17") + "\n"), "pat-v1");
    EXPECT_EQ(kindOf(record + "\n" + record.substr(0, 400)), "pat-v1") << "the second is cut off";
    EXPECT_EQ(kindOf("word" + times(200, " 17") + "\n"), "-");
    EXPECT_EQ(kindOf("a4c3f0000010" + times(200, " word") + "\n"), "-");
}

TEST(DetectTest, OtherTextIsNoRecordFile)
{
    EXPECT_EQ(kindOf("Dear reader,\nthis is no record file\n"), "-");
    EXPECT_EQ(kindOf("id,deviceMac,rssi\r\n0,5c969d0000a1,43\r\n"), "-");
    EXPECT_EQ(kindOf("[\n{\"id\":0,\"deviceMac\":\"5c969d0000a1\",\"rssi\":43}\n]\n"), "-");
    EXPECT_EQ(kindOf("Nov 21 22:00:01 router kernel: usb 1 2 3 4 5 6 7 8 9 10\n"), "-");
}

TEST(DetectTest, AFileWithoutRecordsHasNoKind)
{
    EXPECT_EQ(detectKind("").content, Content::Empty);
    EXPECT_EQ(detectKind("  \n\n").content, Content::Blank);
    EXPECT_EQ(detectKind(std::string(512, '\0')).content, Content::Blank);
    EXPECT_TRUE(detectKind("").isRecordFile());
}

TEST(DetectTest, TheKindOfADisguisedRecordFileIsDetected)
{
    std::string wide;
    for (const char c : sighting + sighting)
        wide += {c, '\0'};
    for (const std::string& text : {"\xFF\xFE" + wide, wide}) {
        const Detection utf16 = detectKind(text);
        EXPECT_EQ(utf16.content, Content::Disguised);
        EXPECT_EQ(utf16.disguise.form, Disguise::Wide);
        EXPECT_TRUE(utf16.isRecordFile());
    }
    const Detection returns =
        detectKind("a4c3f0000010 a4c3f0000011 0 6 33\ra4c3f0000010 a4c3f0000011 0 6 33\r");
    EXPECT_EQ(returns.disguise.form, Disguise::LoneReturns);
    EXPECT_TRUE(returns.isRecordFile());
    for (const size_t lines : {2U, 3U, 6U}) {
        const Detection ranks = detectKind(times(lines, "0a4e00000001 000000000000 0\r"));
        EXPECT_EQ(ranks.disguise.form, Disguise::LoneReturns) << lines;
        EXPECT_EQ(ranks.fits, std::vector<const Kind*>{findKind("ap-rank")}) << lines;
    }
    const Detection zipped = detectKind("\x1F\x8B\x08");
    EXPECT_EQ(zipped.disguise.form, Disguise::Compressed);
    EXPECT_FALSE(zipped.isRecordFile());
    EXPECT_EQ(kindOf("\xEF\xBB\xBF" + sighting), "scanning");
    EXPECT_EQ(kindOf("a4c3f0000010 a4c3f0000011 2 30\r"), "alg-output");
}

TEST(DetectTest, TheKindOfTheUserIsUsed)
{
    const Kind* station = findKind("station");
    EXPECT_EQ(detectKind("Dear reader,\n", station).kind, station);
    EXPECT_EQ(detectKind("", station).kind, station);
    EXPECT_EQ(detectKind("\x1F\x8B\x08", station).kind, nullptr);
}

} // namespace
