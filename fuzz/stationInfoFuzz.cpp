/* SPDX-License-Identifier: Apache-2.0 */
#include "support/fuzzing.h"

static void expectMacs(fuzz::Array<StaConnection>& stas)
{
    for (int i = 0; i < stas.count(); ++i)
        FUZZ_EXPECT(fuzz::isValidMac(stas[i].deviceMac) && fuzz::isValidMac(stas[i].apMac));
}

static void readStations(const char* path)
{
    fuzz::Array<StaConnection> stas(fuzz::records(path));
    stationInfoOnlyReader(path, stas.get());
    expectMacs(stas);
    mimoSync(stas.get(), stas.count());
}

static void readTwice(const char* path)
{
    fuzz::Array<StaConnection> stas(2 * fuzz::records(path));
    stationNodeInfoReader(path, path, stas.get());
    expectMacs(stas);
}

static void append(const char* path, fuzz::Input& in, fuzz::Array<StaConnection>& incomes, int count)
{
    const int before = fuzz::records(path);
    if (!stationInfoAppendWriter(path, incomes.get(), count)) {
        FUZZ_EXPECT(fuzz::fileIs(in));
        return;
    }
    for (int i = 0; i < incomes.count(); ++i) {
        if (!fuzz::onOneLine(incomes[i].deviceMac) || !fuzz::onOneLine(incomes[i].apMac))
            return;
    }
    const int total = before + incomes.count();
    FUZZ_EXPECT(fuzz::fileLines() ==
                (before > 0 && total > ALG_STATION_CAP ? static_cast<int>(ALG_STATION_CAP) : total));
}

FUZZ_TARGET(stationInfo)
{
    const int operation = in.upTo(5);
    const int count = in.count(operation == 1 ? 20 : 140);
    fuzz::Array<StaConnection> incomes(operation == 1 || operation == 2 ? count : 0);
    fuzz::fillRecords(in, incomes, [&in](StaConnection& record) {
        in.mac(record.deviceMac);
        in.mac(record.apMac);
    });
    const char* path = fuzz::file(in);
    switch (operation) {
    case 0:
        readTwice(path);
        break;
    case 1:
        stationNodeInfoWriter(path, incomes.get(), count);
        break;
    case 2:
        append(path, in, incomes, count);
        break;
    case 3:
        FUZZ_EXPECT(!stationInfoAppendWriter(path, nullptr, count));
        break;
    default:
        break;
    }
    readStations(path);
    FUZZ_EXPECT(fuzz::fileIs(in) || operation == 1 || operation == 2);
}
