/* SPDX-License-Identifier: Apache-2.0 */
#include "host.h"

/* [patInitV2] */
static bool createDefault(const char* path)
{
    char mac[ALG_MAC_SIZE] = "0a4e00000001";
    patInitV2(path, mac);
    printf("%d lines\n", dataLineCounter(path)); /* prints: 17 lines */
    return true;
}
/* [patInitV2] */

/* [patParameterReaderV2] */
static bool loadDevices(const char* path)
{
    static PatParameterV2 devices[2]; /* zeroed: a damaged line leaves a member as it is */
    if (!patParameterReaderV2(path, 2, devices))
        return false;
    printf("%s: %d entries\n", devices[0].deviceMac, devices[0].commonPatNum);
    return true; /* prints: 0a4e00000001: 15 entries */
}
/* [patParameterReaderV2] */

/* [patParameterWriterV2] */
static bool saveDevices(const char* path)
{
    static PatParameterV2 devices[2];
    SinglePat entry = {0, 1, 3, 0, 64, 46094};
    strcpy(devices[0].deviceMac, "0a4e00000001");
    strcpy(devices[1].deviceMac, "0a4e00000002");
    devices[1].commonPatNum = 1;
    devices[1].singlePat[0] = entry;
    return patParameterWriterV2(path, 2, devices, NULL);
}
/* [patParameterWriterV2] */

/* [updateSinglePatV2] */
static bool replaceAll(const char* path)
{
    static PatParameterV2 device;
    strcpy(device.deviceMac, "0a4e00000003");
    updateSinglePatV2(path, &device);            /* always false; the other devices are lost */
    printf("%d lines\n", dataLineCounter(path)); /* prints: 2 lines */
    return true;
}
/* [updateSinglePatV2] */

/* [patParameterReader] */
static bool loadOlder(const char* path)
{
    static PatParameter device;
    if (!patParameterReader(path, 1, &device))
        return false;
    printf("%s: b %d, c %d\n", device.deviceMac, device.bParameter[0], device.cParameter[0]);
    return true; /* prints: 0a4e00000001: b 64, c 46094 */
}
/* [patParameterReader] */

/* The module has no writer for version 1. */
static bool writeOlder(const char* path)
{
    FILE* file = fopen(path, "w");
    if (file == NULL)
        return false;
    fprintf(file, "0a4e00000001");
    for (int i = 0; i < 2 * ALG_PAT_CAPACITY; ++i)
        fprintf(file, " %d", i < ALG_PAT_CAPACITY ? 64 : 46094);
    return fclose(file) == 0;
}

int main(void)
{
    const char* path = "pat.txt";
    bool done = createDefault(path) && loadDevices(path) && saveDevices(path) && replaceAll(path) &&
                writeOlder("older.txt") && loadOlder("older.txt");
    return done ? EXIT_SUCCESS : EXIT_FAILURE;
}
