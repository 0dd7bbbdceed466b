/* SPDX-License-Identifier: Apache-2.0 */
#ifndef ALGDATA_REDACTION_H
#define ALGDATA_REDACTION_H

#include <map>
#include <string>

namespace algdata
{

/*
 * Replaces MACs in texts by short names: M1, M2, ... in the order of their first use, so
 * that the same input has the same names. A damaged MAC is replaced too: whatever has
 * eleven or more hexadecimal digits in a row, or six or more with a letter and a digit.
 */
class Redaction
{
  public:
    std::string of(const std::string& text);

  private:
    std::string shortNameOf(const std::string& digits);

    std::map<std::string, std::string> names; /* by digits in lower case */
};

} // namespace algdata

#endif
