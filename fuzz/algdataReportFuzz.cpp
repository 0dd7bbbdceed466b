/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Writes the page of a home with any record files. It expects that an HTML parser finds
 * no error in it, and no element or attribute that the page does not write itself. A line
 * "== NAME" begins a file; a name with a slash is one of a snapshot. The last byte
 * chooses whether MACs and names are replaced.
 */
#include <cstdint>
#include <cstdlib>
#include <set>

#include <gumbo.h>

#include "output/output.h"
#include "report/page.h"
#include "support/sampleTree.h"

using namespace algdata;

namespace
{

void expect(bool holds)
{
    if (!holds)
        abort();
}

/* ---- The files of the input ------------------------------------------------- */

/* A name that a file can have, in a directory of at most one level. */
std::string nameFrom(std::string name)
{
    constexpr size_t longest = 60;
    for (char& c : name)
        if (c == '\0')
            c = '_';
    const size_t slash = name.find('/');
    std::string directory = slash == std::string::npos ? "" : name.substr(0, slash).substr(0, longest);
    std::string file = (slash == std::string::npos ? name : name.substr(slash + 1)).substr(0, longest);
    for (char& c : file)
        if (c == '/')
            c = '_';
    if (file.empty() || file[0] == '.')
        file.insert(0, "_");
    if (!directory.empty() && directory[0] == '.')
        directory.insert(0, "_");
    return directory.empty() ? "files/" + file : "dir" + directory + "/" + file;
}

SampleTree::Files filesOf(const std::string& text)
{
    constexpr size_t maxFiles = 12;
    SampleTree::Files files;
    std::string name = "a.txt";
    std::string content;
    for (size_t at = 0; at < text.size() && files.size() < maxFiles;) {
        const size_t end = std::min(text.find('\n', at), text.size());
        if (text.compare(at, 3, "== ") == 0) {
            files.emplace_back(nameFrom(name), content);
            name = text.substr(at + 3, end - at - 3);
            content.clear();
        } else {
            content += text.substr(at, end - at + 1);
        }
        at = end + 1;
    }
    files.emplace_back(nameFrom(name), content);
    return files;
}

/* ---- The page ---------------------------------------------------------------- */

using Names = std::set<std::string_view>;

void expectAttribute(const GumboAttribute& attribute)
{
    static const Names known = {"aria-hidden",
                                "aria-label",
                                "aria-labelledby",
                                "charset",
                                "class",
                                "content",
                                "d",
                                "data-view",
                                "fill",
                                "font-family",
                                "font-size",
                                "height",
                                "href",
                                "http-equiv",
                                "id",
                                "lang",
                                "name",
                                "points",
                                "r",
                                "role",
                                "rx",
                                "scope",
                                "stroke",
                                "stroke-dasharray",
                                "stroke-width",
                                "tabindex",
                                "text-anchor",
                                "transform",
                                "type",
                                "viewBox",
                                "width",
                                "x",
                                "x1",
                                "x2",
                                "y",
                                "y1",
                                "y2"};
    expect(known.count(attribute.name) != 0);
    expect(std::string_view(attribute.name) != "href" || attribute.value[0] == '#');
}

/* The name of an element as it stands in the page. */
std::string_view nameOf(const GumboElement& element)
{
    if (element.tag != GUMBO_TAG_UNKNOWN)
        return gumbo_normalized_tagname(element.tag);
    GumboStringPiece piece = element.original_tag;
    gumbo_tag_from_original_text(&piece);
    return {piece.data, piece.length};
}

/* Counts the scripts. */
size_t expectOwn(const GumboNode& node)
{
    static const Names known = {"a",       "article",  "body",  "caption", "dd",         "defs",   "desc",
                                "details", "div",      "dl",    "dt",      "figcaption", "figure", "footer",
                                "g",       "h1",       "h2",    "h3",      "h4",         "head",   "header",
                                "html",    "li",       "line",  "main",    "meta",       "nav",    "p",
                                "path",    "polyline", "rect",  "script",  "section",    "span",   "style",
                                "summary", "svg",      "table", "tbody",   "td",         "text",   "th",
                                "thead",   "title",    "tr",    "ul",      "use"};
    if (node.type == GUMBO_NODE_COMMENT)
        abort();
    if (node.type != GUMBO_NODE_ELEMENT)
        return 0;
    const GumboElement& element = node.v.element;
    expect(known.count(nameOf(element)) != 0);
    for (unsigned i = 0; i < element.attributes.length; ++i)
        expectAttribute(*static_cast<const GumboAttribute*>(element.attributes.data[i]));
    size_t scripts = element.tag == GUMBO_TAG_SCRIPT ? 1 : 0;
    for (unsigned i = 0; i < element.children.length; ++i)
        scripts += expectOwn(*static_cast<const GumboNode*>(element.children.data[i]));
    return scripts;
}

void testPage(const std::string& page)
{
    GumboOptions options = kGumboDefaultOptions;
    options.max_errors = 1;
    GumboOutput* const output = gumbo_parse_with_options(&options, page.data(), page.size());
    expect(output->errors.length == 0);
    expect(expectOwn(*output->root) == 2);
    gumbo_destroy_output(&options, output);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (size < 1)
        return 0;
    const SampleTree tree(filesOf(std::string(reinterpret_cast<const char*>(data), size - 1)));
    const bool redact = (data[size - 1] & 1U) != 0;
    Options options;
    options.paths = {tree.path()};
    try {
        const ReportedHome home = readHome(options, redact);
        if (home.snapshots.empty())
            return 0;
        testPage(pageOf(home, redact));
    } catch (const Failure&) {
        return 0; /* the configuration is refused */
    }
    return 0;
}
