/* SPDX-License-Identifier: Apache-2.0 */
#include "host.h"

/* [getPeekThr] */
static void printThreshold(void)
{
    printf("%d\n", getPeekThr(1, 3, 0)); /* prints: 1441 */
    printf("%d\n", getPeekThr(0, 0, 0)); /* prints: 1 */
}
/* [getPeekThr] */

/* [peekThrStructure] */
static void printLargest(void)
{
    uint16_t largest = 0;
    for (int row = 0; row < PEEK_THR_STRUCTURE_NUM; ++row)
        if (peekThrStructure[row].peekThr > largest)
            largest = peekThrStructure[row].peekThr;
    printf("at most %d\n", largest); /* prints: at most 2402 */
}
/* [peekThrStructure] */

/* [peekThr] */
static void printOlderThreshold(void)
{
    printf("%d\n", (int)peekThr[1][3][1]); /* prints: 1733 */
}
/* [peekThr] */

/* [ai_yra_patc_compensation] */
static void printCompensation(void)
{
    printf("%.1f\n", (double)ai_yra_patc_compensation); /* prints: 10.0 */
}
/* [ai_yra_patc_compensation] */

/* [ai_alg_set_patc_comp] */
static void setCompensation(void)
{
    ai_alg_set_patc_comp(12);
    printf("%.1f\n", (double)ai_yra_patc_compensation); /* prints: 12.0 */
}
/* [ai_alg_set_patc_comp] */

/* [ai_yra_rssi_compensation] */
static void keepSignals(void)
{
    ai_yra_rssi_compensation = 0; /* appends no longer lower the RSSI of older sightings */
}
/* [ai_yra_rssi_compensation] */

int main(void)
{
    printThreshold();
    printLargest();
    printOlderThreshold();
    printCompensation();
    setCompensation();
    keepSignals();
    return EXIT_SUCCESS;
}
