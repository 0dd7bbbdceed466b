/* SPDX-License-Identifier: Apache-2.0 */
#include "support/fuzzing.h"

#include "../tests/text/comparison.h"

/*
 * The random bytes of a run. They are consumed from the input before the rest becomes the
 * file. After the last one, the first one is used again.
 */
static uint8_t choices[48];
static size_t nextChoice;

static uint32_t chance(uint32_t below)
{
    uint32_t value = 0;
    for (uint32_t max = below - 1; max > 0; max >>= 8)
        value = value << 8 | choices[nextChoice++ % sizeof choices];
    return value % below;
}

/* Each call of the text layer returns what the C library's call returns, for any bytes and any faults. */
FUZZ_TARGET(text)
{
    for (uint8_t& choice : choices)
        choice = in.byte();
    nextChoice = 0;
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
