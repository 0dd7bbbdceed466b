/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The text layer in a host whose locale has a decimal comma: numbers in files still use
 * a point. The exit status is 77, for skipped, if the machine has no such locale.
 */
#include <locale.h>
#include <stdio.h>
#include <string.h>

#include "dataInterface/text/fields.h"

using namespace alg_internal;

static int failures;

static void expect(bool condition, const char* what)
{
    if (!condition) {
        printf("FAILED: %s\n", what);
        ++failures;
    }
}

static void expectRead()
{
    static char file[] = "1.50 2,25 -3.75e1 0x1.8p1 12.3456789012 .5\n";
    FILE* fp = fmemopen(file, strlen(file), "r");
    TextIn in;
    startText(in, File{fp});
    float withPoint = 0;
    float withComma = 0;
    expect(scan(in, FORMAT("%f %f"), withPoint, withComma) == 2, "two floats are read");
    expect(withPoint == 1.5F, "1.50 is read as one and a half");
    expect(withComma == 2.0F, "2,25 is read up to the comma");
    char rest[ALG_MAC_SIZE];
    expect(scan(in, FORMAT("%12s"), rest) == 1 && strcmp(rest, ",25") == 0, "the comma is not consumed");
    float others[4] = {};
    expect(scan(in, FORMAT("%f %f %f %f"), others[0], others[1], others[2], others[3]) == 4,
           "every form is read");
    expect(others[0] == -37.5F, "-3.75e1 is read");
    expect(others[1] == 3.0F, "0x1.8p1 is read");
    expect(others[2] == 12.3456789012F, "12.3456789012 is read");
    expect(others[3] == 0.5F, ".5 is read");
    fclose(fp);
}

static void expectPrinted()
{
    char file[128] = "";
    FILE* fp = fmemopen(file, sizeof file, "w");
    TextOut out;
    startText(out, File{fp});
    const float small = 1234.5F;
    const float large = 16777216000.0F;
    const int many = 1234567;
    expect(print(out, FORMAT("%.2f %.2f %d\n"), small, large, many) == 0, "three numbers are printed");
    expect(closeText(out) == 0, "the file is closed");
    expect(strcmp(file, "1234.50 16777216000.00 1234567\n") == 0, file);
}

int main()
{
    char comma[16];
    if (setlocale(LC_ALL, "de_DE.UTF-8") == nullptr) {
        printf("text.locale: skipped, there is no de_DE.UTF-8\n");
        return 77;
    }
    snprintf(comma, sizeof comma, "%.1f", 1.5);
    expect(strcmp(comma, "1,5") == 0, "the locale has a decimal comma");
    expectRead();
    expectPrinted();
    return failures == 0 ? 0 : 1;
}
