/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Compares the text layer with the C library's formatted calls on random input.
 *
 *     textDifferential [comparisons] [seed]
 *
 * Prints the number of compared calls and the first differences. Fails if there is a
 * difference.
 */
#include "comparison.h"

/* ---- Random numbers ----------------------------------------------------- */

static uint64_t state;

static uint32_t chance(uint32_t below)
{
    state ^= state << 13;
    state ^= state >> 7;
    state ^= state << 17;
    return static_cast<uint32_t>((state >> 16) % below);
}

/* ---- Bytes -------------------------------------------------------------- */

static size_t putDigits(char* to, size_t max)
{
    const size_t count = 1 + chance(static_cast<uint32_t>(max));
    for (size_t i = 0; i < count; ++i)
        to[i] = static_cast<char>('0' + chance(10));
    return count;
}

static size_t putWord(char* to, const char* word)
{
    const size_t length = strlen(word);
    memcpy(to, word, length);
    return length;
}

/* One piece of a hostile file, at most 2100 characters. */
static size_t putPiece(char* to)
{
    static const char* const unusual[] = {"nan",
                                          "inf",
                                          "-inf",
                                          "infinity",
                                          "infx",
                                          "nanx",
                                          "0x1.8p3",
                                          "0x",
                                          "0x.",
                                          "0xfp",
                                          "1e5",
                                          "1e",
                                          "1e+",
                                          ".5",
                                          ".",
                                          "-.",
                                          "1.5e-3",
                                          "3.40282347e38",
                                          "1e-46",
                                          "1e400",
                                          "0x1fffffffffp-90",
                                          "1.00000005960464477539062500000000000000000000001",
                                          "16777217",
                                          "16777219.0",
                                          "i",
                                          "in",
                                          "n",
                                          "na"};
    static const char* const usual[] = {"0",
                                        "-",
                                        "+",
                                        "-1",
                                        "+7",
                                        "--3",
                                        "255",
                                        "256",
                                        "65535",
                                        "65536",
                                        "4294967295",
                                        "4294967296",
                                        "18446744073709551615",
                                        "18446744073709551616",
                                        "-18446744073709551616",
                                        "99999999999999999999999",
                                        "aabbccddeeff",
                                        "112233445566",
                                        "000000000000",
                                        "12ab",
                                        "0.00",
                                        "1.50",
                                        "-2.25",
                                        "12.345",
                                        "x"};
    static const char blanks[] = " \n\t\r\v\f";
    switch (chance(12)) {
    case 0:
        return putWord(to, likeGlibc ? unusual[chance(sizeof unusual / sizeof *unusual)] : "1.25");
    case 1:
    case 2:
        return putWord(to, usual[chance(sizeof usual / sizeof *usual)]);
    case 3:
        if (chance(40) == 0) {
            memset(to, ' ', 2000);
            return 1000 + chance(1000);
        }
        to[0] = blanks[chance(6)];
        return 1;
    case 4:
        if (chance(60) == 0) {
            memset(to, '0' + static_cast<int>(chance(10)), 2000);
            return 1000 + chance(1000);
        }
        return putDigits(to, 24);
    case 5:
        to[0] = static_cast<char>(chance(8) == 0 ? 0 : chance(256));
        if (!likeGlibc && to[0] != '\0' && strchr("eEiInNpPxX", to[0]) != nullptr)
            to[0] = 'g';
        return 1;
    case 6:
        to[0] = '\n';
        return 1;
    default: {
        const size_t length = putDigits(to, 5);
        to[length] = ' ';
        return length + 1;
    }
    }
}

static void fillBytes(Memory* memory)
{
    const size_t wanted = chance(4) == 0 ? chance(6000) : chance(300);
    memory->size = 0;
    while (memory->size < wanted)
        memory->size += putPiece(memory->bytes + memory->size);
    chooseFaults(memory);
}

int main(int argc, char** argv)
{
    const long wanted = argc > 1 ? atol(argv[1]) : 1000000;
    state = 0x9E3779B97F4A7C15U ^ (argc > 2 ? static_cast<uint64_t>(atol(argv[2])) : 1);
    while (comparisons < wanted) {
        fillBytes(&theirMemory);
        compareStream();
        fillBytes(&theirMemory);
        compareLines();
        comparePrints();
    }
    printf("comparisons: %ld, differences: %ld\n", comparisons, differences);
    return differences == 0 ? 0 : 1;
}
