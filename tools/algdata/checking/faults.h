/* SPDX-License-Identifier: Apache-2.0 */
#ifndef ALGDATA_FAULTS_H
#define ALGDATA_FAULTS_H

#include "checking/rules.h"
#include "reading/detect.h"
#include "reading/source.h"

namespace algdata
{

/* The faults and notes of a source, also of one that has no kind. */
Faults faultsOf(const Source& source, const Detection& detection);

} // namespace algdata

#endif
