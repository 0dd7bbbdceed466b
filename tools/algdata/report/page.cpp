/* SPDX-License-Identifier: Apache-2.0 */
#include "report/page.h"

#include <memory>

#include <fmt/format.h>

#include "report/assets.h"
#include "report/redaction.h"
#include "report/sections.h"
#include "report/svg/plot.h"
#include "text/wording.h"

namespace algdata
{

namespace
{

/* ---- Hashes for the policy ---------------------------------------------------------- */

std::string base64Of(const std::string& bytes)
{
    static constexpr std::string_view digits =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string text;
    for (size_t i = 0; i < bytes.size(); i += 3) {
        uint32_t group = 0;
        for (size_t k = 0; k < 3; ++k)
            group = group << 8U | (i + k < bytes.size() ? static_cast<unsigned char>(bytes[i + k]) : 0U);
        for (size_t k = 0; k < 4; ++k)
            text += i + k <= bytes.size() ? digits[group >> (18 - 6 * k) & 63U] : '=';
    }
    return text;
}

} // namespace

std::string policyHash(const Asset& asset)
{
    std::string bytes;
    for (size_t i = 0; i < asset.sha256.size(); i += 2)
        bytes += static_cast<char>(std::stoi(std::string(asset.sha256.substr(i, 2)), nullptr, 16));
    return "sha256-" + base64Of(bytes);
}

namespace
{

/* ---- Head ------------------------------------------------------------------------------ */

void writeHead(Html& html, const ReportedHome& home)
{
    const Html::Element head = html.in("head");
    html.empty("meta", {{"charset", "utf-8"}});
    html.empty("meta", {{"http-equiv", "Content-Security-Policy"},
                        {"content",
                         fmt::format("default-src 'none'; style-src '{}'; script-src '{}'; base-uri 'none'; "
                                     "form-action 'none'",
                                     policyHash(styleAsset), policyHash(scriptAsset))}});
    html.empty("meta", {{"name", "viewport"}, {"content", "width=device-width, initial-scale=1"}});
    html.empty("meta", {{"name", "color-scheme"}, {"content", "light dark"}});
    html.element("title", "Mesh report: " + home.name);
    const Html::Element style = html.in("style");
    html.own(styleAsset.text);
}

/* ---- Contents ------------------------------------------------------------------------------ */

struct Part {
    const char* name;
    const char* title;
    void (*write)(Html&, const Snapshot&);
};

constexpr Part parts[] = {
    {"overview", "Decision", writeOverview},
    {"candidates", "Candidates", writeCandidates},
    {"links", "Links", writeLinks},
    {"clients", "Clients", writeClients},
    {"neighbours", "Neighbours", writeNeighbours},
    {"pat", "PAT", writePat},
    {"histories", "Histories", writeHistories},
    {"findings", "Findings", writeFindings},
};

void writeNavigation(Html& html, const Snapshot& snapshot)
{
    const Html::Element nav = html.in("nav", {{"aria-label", "Sections of " + snapshot.name}});
    const Html::Element list = html.in("ul");
    for (const Part& part : parts) {
        const Html::Element item = html.in("li");
        html.element("a", {{"href", "#" + snapshot.id + "-" + part.name}}, part.title);
    }
}

/* A home with one snapshot has its name in the header. */
std::string titleOf(const Snapshot& snapshot, bool only)
{
    const std::string start = startText(snapshot);
    if (only)
        return start.empty() ? "The files of this home" : "Run of " + start;
    return "Snapshot " + snapshot.name + (start.empty() ? "" : ", run of " + start);
}

void writeSnapshot(Html& html, const Snapshot& snapshot, bool only)
{
    const Html::Element article = html.in(
        "article", {{"id", snapshot.id}, {"class", "snapshot"}, {"aria-labelledby", snapshot.id + "-name"}});
    html.element("h2", {{"id", snapshot.id + "-name"}}, titleOf(snapshot, only));
    writeNavigation(html, snapshot);
    for (const Part& part : parts)
        part.write(html, snapshot);
}

void writeHeader(Html& html, const ReportedHome& home)
{
    const Html::Element header = html.in("header");
    html.element("h1", "Mesh report: " + home.name);
    if (home.snapshots.size() > 1)
        html.element(
            "p", {{"class", "desc"}},
            fmt::format("{} of the home, the newest first", plural(home.snapshots.size(), "snapshot")));
    if (!home.complete)
        html.element(
            "p", {{"class", "incomplete"}},
            "Some inputs could not be read and are missing on this page; the messages of algdata name them.");
    html.empty("div", {{"id", "controls"}});
}

/* What a program, or the script of the page, needs to know about the snapshots. */
void writeData(Html& html, const ReportedHome& home)
{
    const Html::Element script = html.in("script", {{"type", "application/json"}, {"id", "data"}});
    html.own("{\"snapshots\":[");
    for (size_t i = home.snapshots.size(); i-- > 0;) {
        const Snapshot& snapshot = home.snapshots[i];
        html.own(fmt::format(
            "{{\"id\":{},\"name\":{},\"devices\":{},\"errors\":{},\"warnings\":{},\"notes\":{}}}{}",
            html.json(snapshot.id), html.json(snapshot.name), snapshot.mesh.devices.size(),
            snapshot.count(Severity::Error), snapshot.count(Severity::Warning),
            snapshot.count(Severity::Note), i == 0 ? "" : ","));
    }
    html.own("]}");
}

void writeBody(Html& html, const ReportedHome& home)
{
    const Html::Element body = html.in("body");
    {
        svg::defineMarks(html);
        html.element("a", {{"href", "#main"}, {"class", "skip"}}, "To the content");
        writeHeader(html, home);
        const Html::Element main = html.in("main", {{"id", "main"}});
        writeDecisions(html, home);
        for (size_t i = home.snapshots.size(); i-- > 0;)
            writeSnapshot(html, home.snapshots[i], home.snapshots.size() == 1);
        writeChanges(html, home);
    }
    html.element("footer", "Written by algdata " ALGDATA_VERSION " from the record files of the home.");
    writeData(html, home);
    const Html::Element script = html.in("script");
    html.own(scriptAsset.text);
}

} // namespace

std::string pageOf(const ReportedHome& home, bool redact)
{
    Redaction redaction;
    Html html(redact ? Html::Rewrite([&](const std::string& text) { return redaction.of(text); }) : nullptr);
    html.own("<!DOCTYPE html>\n");
    {
        const Html::Element root = html.in("html", {{"lang", "en"}});
        writeHead(html, home);
        writeBody(html, home);
    }
    return html.all();
}

} // namespace algdata
