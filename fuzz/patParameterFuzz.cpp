/* SPDX-License-Identifier: Apache-2.0 */
#include "support/fuzzing.h"

/* The stream of an empty version 1 file stays open, as its reader promises. */
static void readVersion1(const char* path, int count)
{
    fuzz::Array<PatParameter> pats(count);
    const bool empty = dataLineCounter(path) == 0;
    patParameterReader(path, count, pats.get());
    FUZZ_EXPECT(fuzz::closeLeftStreams() == (empty ? 1 : 0));
    for (int i = 0; i < count; ++i)
        FUZZ_EXPECT(fuzz::macHolds(pats[i].deviceMac));

    fuzz::Array<AlgPatParameter> algs(count);
    FUZZ_EXPECT(patInt2Alg(count, pats.get(), algs.get()));
}

/* What was read is converted to floats and back: nothing is changed by it. */
static void convertThereAndBack(fuzz::Array<PatParameterV2>& pats)
{
    fuzz::Array<AlgPatParameterV2> algs(pats.count());
    patInt2AlgV2(pats.count(), pats.get(), algs.get());
    for (int i = 0; i < pats.count(); ++i) {
        PatParameterV2 before = pats[i];
        FUZZ_EXPECT(patAlg2IntV2(1, &pats[i], &algs[i]));
        FUZZ_EXPECT(memcmp(before.singlePat, pats[i].singlePat, sizeof before.singlePat) == 0);
    }
}

static void readVersion2(const char* path, int count)
{
    fuzz::Array<PatParameterV2> pats(count);
    patParameterReaderV2(path, count, pats.get());
    for (int i = 0; i < count; ++i) {
        FUZZ_EXPECT(fuzz::macHolds(pats[i].deviceMac));
        FUZZ_EXPECT(pats[i].commonPatNum <= 100);
        pats[i].deviceMac[15] = '\0';
    }
    convertThereAndBack(pats);
}

/* Any floats: nothing but the low bits of the result can be said of them. */
static void convertAnything(fuzz::Input& in)
{
    AlgPatParameterV2 alg;
    in.fill(alg);
    in.mac(alg.deviceMac);
    fuzz::Array<PatParameterV2> pat(1);
    FUZZ_EXPECT(patAlg2IntV2(1, pat.get(), &alg));
    FUZZ_EXPECT(pat[0].commonPatNum <= 100);
    ai_alg_set_patc_comp(in.byte() - 128);
}

FUZZ_TARGET(patParameter)
{
    const int operation = in.upTo(7);
    const int count = in.count(4); /* few: a file that ends early is a message for each value */
    if (operation == 7)
        return convertAnything(in);
    PatParameterV2 income;
    in.fill(income);
    in.mac(income.deviceMac);
    const char* path = fuzz::file(in);
    switch (operation) {
    case 0:
        return readVersion1(path, count);
    case 1:
        FUZZ_EXPECT(!updateSinglePatV2(path, count > 0 ? &income : nullptr));
        break;
    case 2:
        patParameterWriterV2(path, 1, &income, nullptr);
        break;
    case 3:
        patInitV2(path, income.deviceMac);
        break;
    default:
        break;
    }
    const bool filled = operation >= 4 && in.size() > 0;
    readVersion2(path, count);
    FUZZ_EXPECT(!filled || fuzz::fileIs(in));
}
