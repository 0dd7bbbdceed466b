/* SPDX-License-Identifier: Apache-2.0 */
/* Writes and reads files with the module in a program whose own functions have the module's private names. */
#include <stdarg.h>
#include <stdio.h>
#include <string.h>

#include "dataInterface.h"

int g_yra_debug = 6;

void libzo_log(const char* format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    vprintf(format, arguments);
    va_end(arguments);
    putchar('\n');
}

static int failures;

static void expect(bool condition, const char* what)
{
    if (condition)
        return;
    printf("FAILED: %s\n", what);
    ++failures;
}

static void expectFile(const char* path, const char* text)
{
    char content[1024] = "";
    FILE* fp = fopen(path, "r");
    if (fp != nullptr) {
        content[fread(content, 1, sizeof content - 1, fp)] = '\0';
        fclose(fp);
    }
    expect(strcmp(text, content) == 0, path);
}

int main()
{
    ScanningInfo sighting = {"0a4e00000001", "0a4e00000002", 1, 36, 40};
    expect(scanningInfoWriter("scanning", &sighting, 1), "scanningInfoWriter()");
    expect(appendSingleScanningInfo("scanning", &sighting), "appendSingleScanningInfo()");
    expectFile("scanning", "0a4e00000001 0a4e00000002  1  36  37\n"
                           "0a4e00000001 0a4e00000002  1  36  40\n");

    ScoreInfo score = {};
    strcpy(score.fatherMAC, "0a4e00000003");
    score.hopsFactor = 0.75F;
    expect(scoreInfoWriter("score", &score, 1), "scoreInfoWriter()");
    ScoreInfo loaded = {};
    expect(scoreInfoReader("score", &loaded, 1), "scoreInfoReader()");
    expect(loaded.hopsFactor == 0.75F, "the hop factor is read back");
    expectFile("score", "0a4e00000003  0 0.75  0    0 0.00    0  0  0  0  0  0"
                        "    0    0    0    0    0    0    0    0    0    0\n");

    ApRank ranks[2] = {{"0a4e00000001", "000000000000", 1}, {"0a4e00000002", "0a4e00000001", 2}};
    expect(updataSingleApRankInfo("ranks", &ranks[0]), "updataSingleApRankInfo(), a new file");
    expect(updataSingleApRankInfo("ranks", &ranks[1]), "updataSingleApRankInfo(), a new device");
    ranks[0].apRank = 9;
    expect(updataSingleApRankInfo("ranks", &ranks[0]), "updataSingleApRankInfo(), a known device");
    expectFile("ranks", "0a4e00000001 000000000000 9\n0a4e00000002 0a4e00000001 2\n");
    expect(dataLineCounter("ranks") == 2, "dataLineCounter()");
    return failures == 0 ? 0 : 1;
}
