/* SPDX-License-Identifier: Apache-2.0 */
#include <stdio.h>

#include "../dataInterface.h"
#include "diagnostics.h"
#include "text.h"

/* Written and read with the same string. */
static constexpr auto candidateLine = FORMAT("%12s %hhu %hhu %hhu %hu %hhu %hhu %hhu %hhu\n");

bool candidateApNodeInfoReader(const char* path, CandidateAp* pCandidateAp)
{
    FILE* fp = fopen(path, "r");
    if (fp == nullptr) {
        LOG_ERROR("libzo: [%s:%d]: Failed to read file: %s.\n", __func__, __LINE__, path);
        return false;
    }
    TextIn in;
    startText(in, fp);
    for (CandidateAp* ap = pCandidateAp; takeLine(in); ++ap) {
        if (scan(in, candidateLine, ap->apMac, ap->connectBand, ap->roamingAvailable, ap->rssi,
                 ap->throughput, ap->wifimode, ap->bandwidth, ap->mcslevel, ap->mimo) == -1) {
            LOG_ERROR("libzo: [%s:%d]: sscanf error, path: %s", __func__, __LINE__, path);
            fclose(fp);
            return false;
        }
    }
    if (fclose(fp) == -1) {
        LOG_ERROR("libzo: [%s:%d]: fclose error, path:%s.\n", __func__, __LINE__, path);
        return false;
    }
    return true;
}

bool candidateApNodeInfoWriter(const char* path, CandidateAp* pCandidateAp, int canApNum)
{
    FILE* fp = fopen(path, "w");
    if (fp == nullptr) {
        LOG_ERROR("libzo: [%s:%d]: Failed to write file: %s.\n", __func__, __LINE__, path);
        return false;
    }
    TextOut out;
    startText(out, fp);
    for (int i = 0; i < canApNum; ++i) {
        const CandidateAp* ap = &pCandidateAp[i];
        if (print(out, candidateLine, ap->apMac, ap->connectBand, ap->roamingAvailable, ap->rssi,
                  ap->throughput, ap->wifimode, ap->bandwidth, ap->mcslevel, ap->mimo) == -1) {
            /* The close's text serves for a failed print too, on purpose. */
            LOG_ERROR("libzo: [%s:%d]: fclose error, path:%s.\n", __func__, __LINE__, path);
            closeText(out);
            return false;
        }
    }
    if (closeText(out) == -1) {
        LOG_ERROR("libzo: [%s:%d]: fclose error, path:%s.\n", __func__, __LINE__, path);
        return false;
    }
    return true;
}
