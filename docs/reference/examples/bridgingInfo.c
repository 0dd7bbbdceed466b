/* SPDX-License-Identifier: Apache-2.0 */
#include "host.h"

/* [bridgingApNodeInfoWriter] */
static bool saveLinks(const char* path)
{
    BridgingNodeV2 links[1];
    memset(links, 0, sizeof links);
    strcpy(links[0].deviceMAC, "0a4e00000002");
    strcpy(links[0].fatherDeviceMAC, "0a4e00000001");
    links[0].bridgingRssi[1] = 45;
    return bridgingApNodeInfoWriter(path, links, 1);
}
/* [bridgingApNodeInfoWriter] */

/* [updateSingleBridgingInfo] */
static bool addReport(const char* path)
{
    BridgingNodeV2 link;
    memset(&link, 0, sizeof link);
    strcpy(link.deviceMAC, "0a4e00000002");
    strcpy(link.fatherDeviceMAC, "0a4e00000001");
    link.bridgingRssi[1] = 51;
    updateSingleBridgingInfo(path, &link, true);   /* always true; on the FAP the file is a log */
    printf("%d reports\n", dataLineCounter(path)); /* prints: 2 reports */
    return true;
}
/* [updateSingleBridgingInfo] */

/* [bridgingApNodeInfoReader] */
static bool loadLinks(const char* path)
{
    BridgingNodeV2 links[ALG_FAP_BRIDGING_CAP];
    int count = dataLineCounter(path);
    if (count < 1 || count > ALG_FAP_BRIDGING_CAP || !bridgingApNodeInfoReader(path, links))
        return false;
    printf("now %d\n", links[count - 1].bridgingRssi[1]); /* prints: now 51 */
    return true;
}
/* [bridgingApNodeInfoReader] */

int main(void)
{
    const char* path = "links.txt";
    return saveLinks(path) && addReport(path) && loadLinks(path) ? EXIT_SUCCESS : EXIT_FAILURE;
}
