/* SPDX-License-Identifier: Apache-2.0 */
/*
 * From what is known to what is to be done.
 *
 * The scoring here is an illustration: plain enough to follow with a pencil,
 * good enough to make a simulated mesh better. It is not the algorithm.
 *
 *     throughput of a link     the better of its bands: what the throughput
 *                              model gives at the band's signal, no more than
 *                              65% of the negotiated rate, times the share of
 *                              the father's air that is free
 *     throughput to the FAP    the smaller of the link's and the father's own;
 *                              two wireless hops in a row share the air, so
 *                              there 1/(1/a + 1/b)
 *     hop factor               1 / (1 + 0.15 hops of the father)
 *     time normalization       5 ms / (5 ms + average delay)
 *     points                   the three multiplied
 *
 * Throughput model: peak / (1 + exp(-b (signal + c))), signal in dB above the
 * noise floor.
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
    std::string station; /* the station that was looked at; empty when none can roam */
    std::vector<CandidateAp> candidates;
    ApAlgInterfaceOutput decision;
};

Plan decide(const Knowledge& known, uint32_t now);

/* Draws the model of every father towards what its wireless links really reach. */
void learn(Knowledge& known);

double points(const ScoreInfo& score);

#endif
