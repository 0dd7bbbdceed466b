/* SPDX-License-Identifier: Apache-2.0 */
#include "host.h"

/* [stationNodeInfoWriter] */
static bool saveSamples(const char* path)
{
    StaConnection samples[1] = {
        {0, "5c969d0000a1", "0a4e00000001", 1, 45, 433, 400, 100, 200, 5, 2, 9, MIMO_1, 3, 95}};
    return stationNodeInfoWriter(path, samples, 1);
}
/* [stationNodeInfoWriter] */

/* [stationInfoAppendWriter] */
static bool addSample(const char* path)
{
    StaConnection sample = {0, "5c969d0000a2", "0a4e00000001", 1, 50, 866, 800, 10, 20, 5, 2, 9, MIMO_2, 3,
                            95};
    return stationInfoAppendWriter(path, &sample, 1);
}
/* [stationInfoAppendWriter] */

/* [stationInfoOnlyReader] */
static bool loadSamples(const char* path)
{
    StaConnection samples[ALG_STATION_CAP];
    int count = dataLineCounter(path);
    if (count < 1 || count > ALG_STATION_CAP || !stationInfoOnlyReader(path, samples))
        return false;
    printf("%d: %s\n", samples[1].id, samples[1].deviceMac); /* prints: 1: 5c969d0000a2 */
    return true;
}
/* [stationInfoOnlyReader] */

/* [stationNodeInfoReader] */
static bool loadBoth(const char* fapPath, const char* rePath)
{
    StaConnection samples[2 * ALG_STATION_CAP];
    int fap = dataLineCounter(fapPath);
    int re = dataLineCounter(rePath);
    if (fap < 0 || re < 0 || fap + re > 2 * ALG_STATION_CAP)
        return false;
    if (!stationNodeInfoReader(fapPath, rePath, samples))
        return false;
    printf("%d samples\n", fap + re); /* prints: 4 samples */
    return true;
}
/* [stationNodeInfoReader] */

/* [mimoSync] */
static bool compareRates(void)
{
    StaConnection sample = {0, "5c969d0000a1", "0a4e00000001", 1, 45, 433, 400, 100, 200, 5, 2, 9, MIMO_1, 3,
                            95};
    mimoSync(&sample, 1);
    printf("%d with two streams\n", sample.rxRate); /* prints: 866 with two streams */
    return sample.mimo == MIMO_2;
}
/* [mimoSync] */

int main(void)
{
    const char* path = "stations.txt";
    bool done =
        saveSamples(path) && addSample(path) && loadSamples(path) && loadBoth(path, path) && compareRates();
    return done ? EXIT_SUCCESS : EXIT_FAILURE;
}
