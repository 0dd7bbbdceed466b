/* SPDX-License-Identifier: Apache-2.0 */
#include "host.h"

/* [touchFile] */
static bool createFile(const char* path)
{
    return touchFile(path); /* an update of a missing file would log an error */
}
/* [touchFile] */

/* [dataLineCounter] */
static bool countRecords(const char* path)
{
    int count = dataLineCounter(path);
    if (count < 0)
        return false;
    printf("%d records\n", count); /* prints: 0 records */
    return true;
}
/* [dataLineCounter] */

int main(void)
{
    return createFile("records.txt") && countRecords("records.txt") ? EXIT_SUCCESS : EXIT_FAILURE;
}
