/* SPDX-License-Identifier: Apache-2.0 */
#include "host.h"

/* [apNodeInfoWriterV2] */
static bool saveNodes(const char* path)
{
    ApNodeV2 nodes[2];
    memset(nodes, 0, sizeof nodes);
    strcpy(nodes[0].deviceMAC, "0a4e00000001");
    strcpy(nodes[0].fatherDeviceMAC, "000000000000");
    strcpy(nodes[1].deviceMAC, "0a4e00000002");
    strcpy(nodes[1].fatherDeviceMAC, "0a4e00000001");
    nodes[1].wirelessChannelUtilization[1] = 24;
    nodes[1].wirelessRxRate[1] = 866;
    return apNodeInfoWriterV2(path, 2, nodes);
}
/* [apNodeInfoWriterV2] */

/* [apNodeInfoReaderV2] */
static bool loadNodes(const char* path)
{
    ApNodeV2 nodes[2];
    char macs[2][ALG_MAC_SIZE];
    if (!apNodeInfoReaderV2(path, 2, nodes, macs))
        return false;
    printf("%s: free %d, rate %d\n", macs[1], nodes[1].wirelessChannelUtilization[1],
           nodes[1].wirelessRxRate[1]); /* prints: 0a4e00000002: free 71, rate 866 */
    return true;
}
/* [apNodeInfoReaderV2] */

int main(void)
{
    return saveNodes("nodes.txt") && loadNodes("nodes.txt") ? EXIT_SUCCESS : EXIT_FAILURE;
}
