/* SPDX-License-Identifier: Apache-2.0 */
#include "support/fuzzing.h"

FUZZ_TARGET(fileHelpers)
{
    const bool touch = in.upTo(1) == 1;
    const char* path = fuzz::file(in);
    if (touch)
        touchFile(path);
    const int lines = dataLineCounter(path);
    FUZZ_EXPECT(lines >= -1 && lines <= static_cast<int>(in.size()));
    FUZZ_EXPECT(lines == -1 || lines >= fuzz::fileLines());
    FUZZ_EXPECT(fuzz::fileIs(in));
}
