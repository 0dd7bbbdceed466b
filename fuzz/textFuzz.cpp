/* SPDX-License-Identifier: Apache-2.0 */
#include "support/fuzzing.h"

#include "../tests/text/comparison.h"

/* The choices of a run: taken before the file is what is left, and used again from the first on. */
static uint8_t choices[48];
static size_t choice;

static uint32_t chance(uint32_t below)
{
    uint32_t any = 0;
    for (uint32_t most = below - 1; most > 0; most >>= 8)
        any = any << 8 | choices[choice++ % sizeof choices];
    return any % below;
}

/* Every call of the text layer gives what the C library's gives, on any bytes and with any faults. */
FUZZ_TARGET(text)
{
    for (uint8_t& any : choices)
        any = in.byte();
    choice = 0;
    const int operation = in.upTo(2);
    theirMemory.size = in.size() < sizeof theirMemory.bytes ? in.size() : sizeof theirMemory.bytes;
    memcpy(theirMemory.bytes, in.text(), theirMemory.size);
    chooseFaults(&theirMemory);
    if (operation == 0)
        compareStream();
    else if (operation == 1)
        compareLines();
    else
        comparePrints();
    FUZZ_EXPECT(differences == 0);
}
