/* SPDX-License-Identifier: Apache-2.0 */
#include "support/fuzzing.h"

FUZZ_TARGET(apAlgOutputInfo)
{
    const bool write = in.upTo(2) == 1;
    ApAlgInterfaceOutput output = {};
    if (write) {
        in.fill(output);
        in.mac(output.srcMAC);
        in.mac(output.dstMAC);
    }
    const char* path = fuzz::file(in);
    if (write)
        apAlgOutputInfoWriter(path, &output);

    fuzz::Array<ApAlgInterfaceOutput> loaded(1);
    apAlgOutputInfoReader(path, loaded.get());
    FUZZ_EXPECT(fuzz::isValidMac(loaded[0].srcMAC) && fuzz::isValidMac(loaded[0].dstMAC));
    FUZZ_EXPECT(write || fuzz::fileIs(in));
}
