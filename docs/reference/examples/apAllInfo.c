/* SPDX-License-Identifier: Apache-2.0 */
#include "host.h"

/* [apAllInfoWriter] */
static bool saveNodes(const char* path)
{
    ApInfoAllV2 nodes[2];
    memset(nodes, 0, sizeof nodes);
    strcpy(nodes[0].apNodeV2.deviceMAC, "0a4e00000001");
    strcpy(nodes[0].apNodeV2.fatherDeviceMAC, "000000000000");
    strcpy(nodes[1].apNodeV2.deviceMAC, "0a4e00000002");
    strcpy(nodes[1].apNodeV2.fatherDeviceMAC, "0a4e00000001");
    nodes[1].apNodeV2.plcUtilization = 30;
    return apAllInfoWriter(path, nodes, 2, false);
}
/* [apAllInfoWriter] */

/* [apAllInfoOnlyReader] */
static bool loadStored(const char* path)
{
    ApInfoAllV2 nodes[2];
    if (!apAllInfoOnlyReader(path, nodes, 2, NULL))
        return false;
    printf("stored: %d\n", nodes[1].apNodeV2.plcUtilization); /* prints: stored: 30 */
    return true;
}
/* [apAllInfoOnlyReader] */

/* [apAllInfoReader] */
static bool loadBounded(const char* path)
{
    ApInfoAllV2 nodes[2];
    char macs[2][ALG_MAC_SIZE] = {"", ""};
    memset(nodes, 0, sizeof nodes);
    apAllInfoReader(path, nodes, 2, macs); /* always true, so look at what it has read */
    if (macs[1][0] == '\0')
        return false;
    printf("loaded: %d\n", nodes[1].apNodeV2.plcUtilization); /* prints: loaded: 65 */
    return true;
}
/* [apAllInfoReader] */

/* [apAllDetailInfoWriter] */
static bool saveDetail(const char* path)
{
    ApInfoAllV2 fap;
    memset(&fap, 0, sizeof fap);
    strcpy(fap.apNodeV2.deviceMAC, "0a4e00000001");
    strcpy(fap.apNodeV2.fatherDeviceMAC, "000000000000");
    fap.apNodeV2.ethernetRate = 1000;
    return apAllDetailInfoWriter(path, &fap, 1, false);
}
/* [apAllDetailInfoWriter] */

/* [apAllDetailInfoReader] */
static bool loadDetail(const char* path)
{
    ApInfoAllV2 fap;
    if (!apAllDetailInfoReader(path, &fap, 1, NULL))
        return false;
    printf("Ethernet: %d\n", fap.apNodeV2.ethernetRate); /* prints: Ethernet: 1000 */
    return true;
}
/* [apAllDetailInfoReader] */

/* [updataSingleApAllInfo] */
static bool moveNode(const char* path)
{
    ApInfoAllV2 node;
    memset(&node, 0, sizeof node);
    strcpy(node.apNodeV2.deviceMAC, "0a4e00000003");
    strcpy(node.apNodeV2.fatherDeviceMAC, "0a4e00000002");
    if (!updataSingleApAllInfo(path, &node)) /* a node of this MAC is replaced, a new one is added */
        return false;
    printf("%d nodes\n", dataLineCounter(path)); /* prints: 3 nodes */
    return true;
}
/* [updataSingleApAllInfo] */

/* [deleteSingleApAllInfo] */
static bool forgetNode(const char* path)
{
    char mac[ALG_MAC_SIZE] = "0a4e00000002";
    if (!deleteSingleApAllInfo(path, mac))
        return false;
    printf("%d nodes are left\n", dataLineCounter(path)); /* prints: 2 nodes are left */
    return true;
}
/* [deleteSingleApAllInfo] */

int main(void)
{
    const char* path = "all.txt";
    bool done = saveNodes(path) && loadStored(path) && loadBounded(path) && saveDetail("detail.txt") &&
                loadDetail("detail.txt") && moveNode(path) && forgetNode(path);
    return done ? EXIT_SUCCESS : EXIT_FAILURE;
}
