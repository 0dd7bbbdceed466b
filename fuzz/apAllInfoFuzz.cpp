/* SPDX-License-Identifier: Apache-2.0 */
#include "support/fuzzing.h"

static void fillInfo(fuzz::Input& in, ApInfoAllV2& info)
{
    in.fill(info);
    in.mac(info.apNodeV2.deviceMAC);
    in.mac(info.apNodeV2.fatherDeviceMAC);
}

static void expectMacs(ApInfoAllV2& info)
{
    FUZZ_EXPECT(fuzz::isValidMac(info.apNodeV2.deviceMAC));
    FUZZ_EXPECT(fuzz::isValidMac(info.apNodeV2.fatherDeviceMAC));
}

static void readAll(const char* path, int count, bool bounded)
{
    fuzz::Array<ApInfoAllV2> infos(count);
    fuzz::Array<char[ALG_MAC_SIZE]> macs(count);
    if (bounded)
        FUZZ_EXPECT(apAllInfoReader(path, infos.get(), count, macs.get()));
    else
        apAllInfoOnlyReader(path, infos.get(), count, macs.get());
    for (int i = 0; i < count; ++i)
        expectMacs(infos[i]);
}

/* All detail lines are written from one record and read into one record, for any count. */
static void detail(const char* path, uint8_t count, ApInfoAllV2& info, bool write)
{
    if (write)
        apAllDetailInfoWriter(path, &info, count, true);
    fuzz::Array<ApInfoAllV2> one(1);
    apAllDetailInfoReader(path, one.get(), count, nullptr);
    expectMacs(one[0]);
    FUZZ_EXPECT(one[0].alg_version.major_ver == fuzz::UNTOUCHED);
    FUZZ_EXPECT(one[0].apNodeV2.tipc_node == fuzz::UNTOUCHED);
}

static void update(const char* path, fuzz::Input& in, ApInfoAllV2& income)
{
    const int before = fuzz::records(path);
    if (!updataSingleApAllInfo(path, &income))
        FUZZ_EXPECT(fuzz::fileIs(in));
    else if (fuzz::onOneLine(income.apNodeV2.deviceMAC) && fuzz::onOneLine(income.apNodeV2.fatherDeviceMAC))
        FUZZ_EXPECT(fuzz::fileLines() == before || fuzz::fileLines() == before + 1);
}

static void remove(const char* path, fuzz::Input& in, char* mac)
{
    const int before = fuzz::records(path);
    if (deleteSingleApAllInfo(path, mac))
        FUZZ_EXPECT(fuzz::fileLines() == before - 1);
    else
        FUZZ_EXPECT(fuzz::fileIs(in));
}

FUZZ_TARGET(apAllInfo)
{
    const int operation = in.upTo(7);
    const int count = in.count(40);
    ApInfoAllV2 income;
    fillInfo(in, income);
    const char* path = fuzz::file(in);
    switch (operation) {
    case 0:
    case 1:
        readAll(path, count, operation == 0);
        break;
    case 2:
    case 3:
        detail(path, static_cast<uint8_t>(count), income, operation == 2);
        break;
    case 4:
        remove(path, in, income.apNodeV2.deviceMAC);
        break;
    case 5:
        updataSingleApAllInfo(path, nullptr);
        break;
    default:
        update(path, in, income);
        break;
    }
    if (operation <= 1 || operation == 3 || operation == 5)
        FUZZ_EXPECT(fuzz::fileIs(in));
    readAll(path, fuzz::records(path), false);
}
