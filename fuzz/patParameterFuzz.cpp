/* SPDX-License-Identifier: Apache-2.0 */
#include "support/fuzzing.h"

/* patParameterReader() leaves the stream of an empty file open, as documented. */
static void readVersion1(const char* path, int count)
{
    fuzz::Array<PatParameter> pats(count);
    const bool empty = dataLineCounter(path) == 0;
    patParameterReader(path, count, pats.get());
    FUZZ_EXPECT(fuzz::closeLeftStreams() == (empty ? 1 : 0));
    for (int i = 0; i < count; ++i)
        FUZZ_EXPECT(fuzz::isValidMac(pats[i].deviceMac));

    fuzz::Array<AlgPatParameter> algs(count);
    FUZZ_EXPECT(patInt2Alg(count, pats.get(), algs.get()));
}

/* Converting the parameters to floats and back changes nothing. */
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
        FUZZ_EXPECT(fuzz::isValidMac(pats[i].deviceMac));
        /* Also if the file states no number: UNTOUCHED is below the capacity. */
        FUZZ_EXPECT(pats[i].commonPatNum <= ALG_PAT_CAPACITY);
        pats[i].deviceMac[ALG_MAC_SIZE - 1] = '\0'; /* a MAC that is not read has no NUL */
    }
    convertThereAndBack(pats);
}

/* For any floats the conversion must succeed, and the count must be within the capacity. */
static void convertAnything(fuzz::Input& in)
{
    AlgPatParameterV2 alg;
    in.fill(alg);
    in.mac(alg.deviceMac);
    fuzz::Array<PatParameterV2> pat(1);
    FUZZ_EXPECT(patAlg2IntV2(1, pat.get(), &alg));
    FUZZ_EXPECT(pat[0].commonPatNum <= ALG_PAT_CAPACITY);
    ai_alg_set_patc_comp(in.byte() - 128);
}

FUZZ_TARGET(patParameter)
{
    const int operation = in.upTo(7);
    const int count = in.count(4); /* small: after the end of the file, each missing value logs a message */
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
    const bool unchanged = operation >= 4 && in.size() > 0; /* an empty file gets the defaults */
    readVersion2(path, count);
    FUZZ_EXPECT(!unchanged || fuzz::fileIs(in));
}
