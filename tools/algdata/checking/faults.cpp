/* SPDX-License-Identifier: Apache-2.0 */
#include "checking/faults.h"

namespace algdata
{

namespace
{

/* A finding about the whole file. */
Faults fileFinding(Rule rule, std::string text)
{
    Faults faults = {{{1, 1, rule, "", std::move(text)}}, {}};
    faults[rule] = 1;
    return faults;
}

Rule ruleOf(Disguise::Form form)
{
    return form == Disguise::Compressed ? Rule::Compressed
           : form == Disguise::Wide     ? Rule::Utf16
                                        : Rule::LoneReturn;
}

} // namespace

Faults faultsOf(const Source& source, const Detection& detection)
{
    if (detection.kind != nullptr)
        return findFaults(*detection.kind, source.bytes);
    if (detection.content == Content::Empty)
        return fileFinding(Rule::EmptyFile, "no records");
    if (detection.content == Content::Disguised)
        return fileFinding(ruleOf(detection.disguise.form), detection.reason());
    if (detection.content != Content::Blank)
        return fileFinding(Rule::UnknownKind, detection.reason());
    if (withoutMark(source.bytes).size() != source.bytes.size())
        return fileFinding(Rule::ByteOrderMark, "only a UTF-8 byte order mark, expected records");
    const bool zeroed = source.bytes.find('\0') != std::string::npos;
    return fileFinding(zeroed ? Rule::ZeroedTail : Rule::BlankLine,
                       zeroed ? "only NUL bytes, expected text" : "only blank lines, expected records");
}

} // namespace algdata
