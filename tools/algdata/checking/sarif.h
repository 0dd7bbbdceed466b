/* SPDX-License-Identifier: Apache-2.0 */
/* Writes findings in SARIF 2.1.0, the format of code scanning services and editors. */
#ifndef ALGDATA_SARIF_H
#define ALGDATA_SARIF_H

#include "checking/rules.h"
#include "output/output.h"

namespace algdata
{

struct SarifResult {
    Rule rule;
    std::string file;
    std::string line;
    std::string column; /* empty if the finding is about the whole line */
    std::string field;  /* empty if it is about none */
    std::string message;
    std::string fingerprint;
};

class SarifLog
{
  public:
    /* Writes the rules of the command. */
    SarifLog(Output& output, Scope scope);

    void put(const SarifResult& result);

    /* `complete` is false if an input could not be read. */
    void finish(bool complete);

  private:
    Output& out;
    bool any = false;
};

} // namespace algdata

#endif
