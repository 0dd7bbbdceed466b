/* SPDX-License-Identifier: Apache-2.0 */
typedef struct TimeDelayInfo {
    char fatherMAC[ALG_MAC_SIZE];
    uint8_t otherMember;
} TimeDelayInfo;
typedef struct OtherInfo {
    uint8_t otherMember;
} OtherInfo;
