/* SPDX-License-Identifier: Apache-2.0 */
#include "support/fuzzing.h"

FUZZ_TARGET(candidateApInfo)
{
    const bool write = in.upTo(1) == 1;
    const int count = in.count(20);
    fuzz::Array<CandidateAp> aps(write ? count : 0);
    fuzz::fillRecords(in, aps, [&in](CandidateAp& record) { in.mac(record.apMac); });
    const char* path = fuzz::file(in);
    if (write)
        candidateApNodeInfoWriter(path, aps.get(), count);

    fuzz::Array<CandidateAp> loaded(fuzz::records(path));
    candidateApNodeInfoReader(path, loaded.get());
    for (int i = 0; i < loaded.count(); ++i)
        FUZZ_EXPECT(fuzz::isValidMac(loaded[i].apMac));
    FUZZ_EXPECT(write || fuzz::fileIs(in));
}
