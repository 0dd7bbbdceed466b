/* SPDX-License-Identifier: Apache-2.0 */
#include "host.h"

/* [apAlgOutputInfoWriter] */
static bool saveDecision(const char* path)
{
    ApAlgInterfaceOutput decision = {"0a4e00000003", "0a4e00000001", ALG_STRATEGY_CAREFUL, 60};
    return apAlgOutputInfoWriter(path, &decision);
}
/* [apAlgOutputInfoWriter] */

/* [apAlgOutputInfoReader] */
static bool loadDecision(const char* path)
{
    ApAlgInterfaceOutput decision;
    memset(&decision, 0, sizeof decision); /* an empty file leaves it as it is */
    if (!apAlgOutputInfoReader(path, &decision))
        return false;
    printf("%s to %s\n", decision.srcMAC, decision.dstMAC); /* prints: 0a4e00000003 to 0a4e00000001 */
    return true;
}
/* [apAlgOutputInfoReader] */

int main(void)
{
    return saveDecision("decision.txt") && loadDecision("decision.txt") ? EXIT_SUCCESS : EXIT_FAILURE;
}
