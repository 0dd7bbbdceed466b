/* SPDX-License-Identifier: Apache-2.0 */
#include "support/fuzzing.h"

static void readScans(const char* path)
{
    fuzz::Array<ScanningInfo> scans(fuzz::records(path));
    const bool result = scanningInfoReader(path, scans.get());
    for (int i = 0; i < scans.count(); ++i) {
        FUZZ_EXPECT(fuzz::isValidMac(scans[i].deviceMAC) && fuzz::isValidMac(scans[i].neighbourMAC));
        FUZZ_EXPECT(!result || scans[i].rssi >= 1);
    }
}

static bool onOneLine(fuzz::Array<ScanningInfo>& scans)
{
    for (int i = 0; i < scans.count(); ++i) {
        if (!fuzz::onOneLine(scans[i].deviceMAC) || !fuzz::onOneLine(scans[i].neighbourMAC))
            return false;
    }
    return true;
}

static void append(const char* path, fuzz::Input& in, fuzz::Array<ScanningInfo>& incomes, int count)
{
    const int before = fuzz::records(path);
    const bool result = count == 1 ? appendSingleScanningInfo(path, incomes.get())
                                   : appendScanningInfo(path, incomes.get(), count);
    if (!result) {
        FUZZ_EXPECT(fuzz::fileIs(in));
    } else if (onOneLine(incomes)) {
        const int total = before + incomes.count();
        FUZZ_EXPECT(fuzz::fileLines() ==
                    (before > 0 && total > ALG_SCANNING_CAP ? static_cast<int>(ALG_SCANNING_CAP) : total));
    }
}

static void remove(const char* path, fuzz::Input& in, const char* mac)
{
    const int before = fuzz::records(path);
    if (scanningInfoDeleter(path, mac))
        FUZZ_EXPECT(fuzz::fileLines() <= before);
    else
        FUZZ_EXPECT(fuzz::fileIs(in));
}

FUZZ_TARGET(scanningInfo)
{
    const int operation = in.upTo(5);
    const int count = in.count(operation == 2 ? 252 : 20);
    char mac[ALG_MAC_SIZE];
    in.mac(mac);
    fuzz::Array<ScanningInfo> incomes(operation <= 2 ? count : 0);
    fuzz::fillRecords(in, incomes, [&in](ScanningInfo& record) {
        in.mac(record.deviceMAC);
        in.mac(record.neighbourMAC);
    });
    ai_yra_rssi_compensation = operation == 5 ? in.byte() : 3;
    const char* path = fuzz::file(in);
    switch (operation) {
    case 0:
        scanningInfoWriter(path, incomes.get(), count);
        break;
    case 1:
    case 2:
        append(path, in, incomes, count);
        break;
    case 3:
        remove(path, in, mac);
        break;
    case 4:
        FUZZ_EXPECT(!appendScanningInfo(path, nullptr, count));
        break;
    default:
        break;
    }
    readScans(path);
    FUZZ_EXPECT(fuzz::fileIs(in) || operation <= 3);
}
