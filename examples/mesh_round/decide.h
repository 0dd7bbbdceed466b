/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Decides what to do, from what the host knows.
 *
 * The scoring is an illustration: simple enough to compute by hand, good enough
 * to improve a simulated mesh. It is not the algorithm.
 *
 *     throughput of a link     that of its best band: the rate of the throughput
 *                              model at the band's signal, at most 65 % of the
 *                              negotiated rate, times the free share of the
 *                              father's air
 *     throughput to the FAP    the smaller of the link's throughput and the
 *                              father's own; 1/(1/a + 1/b) if both hops are
 *                              wireless, because they share the air
 *     hop factor               1 / (1 + 0.15 hops of the father)
 *     time normalization       5 ms / (5 ms + average delay)
 *     points                   the product of throughput, hop factor and time
 *                              normalization
 *
 * The throughput model is peak / (1 + exp(-b (signal + c))), with the signal in
 * dB above the noise floor.
 */
#ifndef MESH_ROUND_DECIDE_H
#define MESH_ROUND_DECIDE_H

#include <string>
#include <vector>

#include "store.h"

struct Plan {
    PerDevice<std::vector<ScoreInfo>> scores; /* per RE: its candidate fathers */
    std::vector<ApRank> ranks;
    ApRankIndex index;
    std::string station; /* the weakest station that can roam; empty if none can */
    std::vector<CandidateAp> candidates;
    ApAlgInterfaceOutput decision;
};

Plan decide(const Knowledge& known, uint32_t now);

/* Adjusts the model of each father towards the rates that its wireless links reach. */
void learn(Knowledge& known);

double points(const ScoreInfo& score);

#endif
