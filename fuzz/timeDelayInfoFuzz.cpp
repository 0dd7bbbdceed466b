/* SPDX-License-Identifier: Apache-2.0 */
#include "support/fuzzing.h"

static void readDelays(const char* path, int count)
{
    fuzz::Array<TimeDelayInfo> infos(count);
    const bool result = timeDelayInfoReader(path, infos.get(), count);
    for (int i = 0; i < count; ++i) {
        FUZZ_EXPECT(fuzz::isValidMac(infos[i].fatherMAC));
        for (int j = 0; j < ALG_DELAY_SAMPLES && result; ++j)
            FUZZ_EXPECT(infos[i].delayTime[j] >= 1 && infos[i].delayTime[j] <= 1000);
    }
}

static void merge(const char* path, fuzz::Input& in, TimeDelayInfo* income, bool append)
{
    const int before = fuzz::records(path);
    const bool result =
        append ? appendSingleTimeDelayInfo(path, income) : updateSingleTimeDelayInfo(path, income);
    if (!result)
        FUZZ_EXPECT(fuzz::fileIs(in));
    else if (fuzz::onOneLine(income->fatherMAC))
        FUZZ_EXPECT(fuzz::fileLines() <= before + 1 && (!append || fuzz::fileLines() <= ALG_TIME_DELAY_CAP));
}

FUZZ_TARGET(timeDelayInfo)
{
    const int operation = in.upTo(6);
    const int count = in.count(20);
    fuzz::Array<TimeDelayInfo> infos(operation == 0 ? count : 1);
    fuzz::fillRecords(in, infos, [&in](TimeDelayInfo& record) { in.mac(record.fatherMAC); });
    const char* path = fuzz::file(in);
    switch (operation) {
    case 0:
        timeDelayInfoWriter(path, infos.get(), count);
        break;
    case 1:
    case 2:
        merge(path, in, &infos[0], operation == 1);
        break;
    case 3:
        emptyTimeDelayFile(path);
        break;
    case 4:
        FUZZ_EXPECT(!appendSingleTimeDelayInfo(path, nullptr));
        break;
    case 5:
        FUZZ_EXPECT(!updateSingleTimeDelayInfo(path, nullptr));
        break;
    default:
        break;
    }
    readDelays(path, count);
    FUZZ_EXPECT(fuzz::fileIs(in) || operation <= 3);
}
