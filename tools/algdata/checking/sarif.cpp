/* SPDX-License-Identifier: Apache-2.0 */
#include "checking/sarif.h"

#include <filesystem>

#include <fmt/format.h>

#include "output/json.h"

namespace algdata
{

namespace
{

bool isUnreserved(char c)
{
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') ||
           std::string_view("-._~/").find(c) != std::string_view::npos;
}

/* The path as a URI reference: relative, or of the scheme file. */
std::string uriOf(const std::string& name)
{
    const std::string path = std::filesystem::path(name).lexically_normal().string();
    std::string uri = path[0] == '/' ? "file://" : "";
    for (const char c : path)
        uri += isUnreserved(c) ? std::string(1, c) : fmt::format("%{:02X}", static_cast<unsigned char>(c));
    return uri;
}

std::string textMember(const char* name, const std::string& text)
{
    return fmt::format(R"("{}":{{"text":{}}})", name, jsonText(text));
}

std::string ruleObject(const RuleText& rule)
{
    const std::string advice = rule.advice;
    return fmt::format(R"({{"id":{},{},{},{}"defaultConfiguration":{{"level":"{}"}}}})", jsonText(rule.name),
                       textMember("shortDescription", rule.summary),
                       textMember("fullDescription", rule.explanation),
                       advice.empty() ? "" : textMember("help", advice) + ",", nameOf(rule.severity));
}

} // namespace

SarifLog::SarifLog(Output& output, Scope scope) : out(output)
{
    out.put("{\n\"$schema\":\"https://json.schemastore.org/sarif-2.1.0.json\",\n\"version\":\"2.1.0\",\n"
            "\"runs\":[{\n\"tool\":{\"driver\":{\"name\":\"algdata\",\"version\":\"" ALGDATA_VERSION
            "\",\"rules\":[");
    const char* before = "\n";
    for (const RuleText* rule : rulesOf(scope)) {
        out.put(before + ruleObject(*rule));
        before = ",\n";
    }
    out.put("\n]}},\n\"results\":[");
}

void SarifLog::put(const SarifResult& result)
{
    const std::string column = result.column.empty() ? "" : fmt::format(",\"startColumn\":{}", result.column);
    out.put(any ? ",\n" : "\n");
    out.put(fmt::format(
        R"({{"ruleId":{},"level":"{}",{},"locations":[{{"physicalLocation":{{"artifactLocation":{{"uri":{}}},)"
        R"("region":{{"startLine":{}{}}}}}}}],"partialFingerprints":{{"algdata/v1":"{}"}}}})",
        jsonText(textOf(result.rule).name), nameOf(textOf(result.rule).severity),
        textMember("message", (result.field.empty() ? "" : result.field + ": ") + result.message),
        jsonText(uriOf(result.file)), result.line, column, result.fingerprint));
    any = true;
}

void SarifLog::finish(bool complete)
{
    out.put(fmt::format("{}],\n\"invocations\":[{{\"executionSuccessful\":{}}}]\n}}]\n}}\n", any ? "\n" : "",
                        complete));
}

} // namespace algdata
