/* SPDX-License-Identifier: Apache-2.0 */
#include "host.h"

/* [scanningInfoWriter] */
static bool saveSightings(const char* path)
{
    ScanningInfo sightings[2] = {{"0a4e00000001", "f4ec380000b1", 1, 36, 40},
                                 {"0a4e00000002", "f4ec380000b1", 1, 36, 25}};
    return scanningInfoWriter(path, sightings, 2);
}
/* [scanningInfoWriter] */

/* [appendScanningInfo] */
static bool addSightings(const char* path)
{
    ScanningInfo sightings[2] = {{"0a4e00000001", "f4ec380000b2", 2, 100, 30},
                                 {"0a4e00000001", "f4ec380000b3", 2, 100, 33}};
    return appendScanningInfo(path, sightings, 2);
}
/* [appendScanningInfo] */

/* [appendSingleScanningInfo] */
static bool addSighting(const char* path)
{
    ScanningInfo sighting = {"0a4e00000002", "f4ec380000b2", 2, 100, 28};
    return appendSingleScanningInfo(path, &sighting);
}
/* [appendSingleScanningInfo] */

/* [scanningInfoDeleter] */
static bool forgetScans(const char* path)
{
    if (!scanningInfoDeleter(path, "0a4e00000001"))
        return false;
    printf("%d sightings are left\n", dataLineCounter(path)); /* prints: 2 sightings are left */
    return true;
}
/* [scanningInfoDeleter] */

/* [scanningInfoReader] */
static bool loadSightings(const char* path)
{
    ScanningInfo sightings[ALG_SCANNING_CAP];
    int count = dataLineCounter(path);
    if (count < 1 || count > ALG_SCANNING_CAP || !scanningInfoReader(path, sightings))
        return false;
    /* 25, less 3 for each append, for the delete and for this call */
    printf("%s: %d\n", sightings[0].neighbourMAC, sightings[0].rssi); /* prints: f4ec380000b1: 13 */
    return true;
}
/* [scanningInfoReader] */

int main(void)
{
    const char* path = "scanning.txt";
    bool done = saveSightings(path) && addSightings(path) && addSighting(path) && forgetScans(path) &&
                loadSightings(path);
    return done ? EXIT_SUCCESS : EXIT_FAILURE;
}
