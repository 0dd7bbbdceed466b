/* SPDX-License-Identifier: Apache-2.0 */
#include "host.h"

/* [emptyTimeDelayFile] */
static bool startAnew(const char* path)
{
    return emptyTimeDelayFile(path);
}
/* [emptyTimeDelayFile] */

/* [timeDelayInfoWriter] */
static bool saveDelays(const char* path)
{
    TimeDelayInfo delays[1] = {
        {"0a4e00000001", {12, 14, 13, 12, 15, 12, 13, 12, 14, 12, 13, 12, 12, 14, 13}}};
    return timeDelayInfoWriter(path, delays, 1);
}
/* [timeDelayInfoWriter] */

/* [updateSingleTimeDelayInfo] */
static bool updateFather(const char* path)
{
    TimeDelayInfo delay = {"0a4e00000001", {20, 22, 21, 20, 23, 20, 21, 20, 22, 20, 21, 20, 20, 22, 21}};
    if (!updateSingleTimeDelayInfo(path, &delay))
        return false;
    printf("%d father\n", dataLineCounter(path)); /* prints: 1 father */
    return true;
}
/* [updateSingleTimeDelayInfo] */

/* [appendSingleTimeDelayInfo] */
static bool addToLog(const char* path)
{
    TimeDelayInfo delay = {"0a4e00000001", {20, 22, 21, 20, 23, 20, 21, 20, 22, 20, 21, 20, 20, 22, 21}};
    if (!appendSingleTimeDelayInfo(path, &delay))
        return false;
    printf("%d records\n", dataLineCounter(path)); /* prints: 2 records */
    return true;
}
/* [appendSingleTimeDelayInfo] */

/* [timeDelayInfoReader] */
static bool loadDelays(const char* path)
{
    TimeDelayInfo delays[2];
    memset(delays, 0, sizeof delays);
    if (!timeDelayInfoReader(path, delays, 2))
        return false;
    printf("%s: %d\n", delays[1].fatherMAC, delays[1].delayTime[0]); /* prints: 0a4e00000001: 20 */
    return true;
}
/* [timeDelayInfoReader] */

int main(void)
{
    const char* path = "delays.txt";
    bool done =
        startAnew(path) && saveDelays(path) && updateFather(path) && addToLog(path) && loadDelays(path);
    return done ? EXIT_SUCCESS : EXIT_FAILURE;
}
