/* SPDX-License-Identifier: Apache-2.0 */
/* Writes HTML and SVG. Every text on a page goes through one of the three escapers. */
#ifndef ALGDATA_HTML_H
#define ALGDATA_HTML_H

#include <functional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace algdata
{

/*
 * The text in valid UTF-8, with everything that is no visible character as \xNN or
 * \u{NNNN}: bytes that are not UTF-8, control characters, line separators and marks
 * that change the direction of the text.
 */
std::string visible(std::string_view text);

/* For the content of an element. */
std::string textEscaped(std::string_view text);

/* For the value of an attribute, in quotation marks. */
std::string attributeEscaped(std::string_view text);

/*
 * A JSON string in quotation marks, which can also stand in a script element: "<", ">",
 * "&" and the line separators are \uNNNN. Escaping "</" alone is not enough, because
 * "<!--<script>" swallows the page.
 */
std::string jsonEscaped(std::string_view text);

/* At most one decimal and never "-0": 12, 12.5. */
std::string coordinate(double value);

struct Attribute {
    const char* name;
    std::string value;

    Attribute(const char* key, std::string text) : name(key), value(std::move(text)) {}
    Attribute(const char* key, double number) : name(key), value(coordinate(number)) {}
};
using Attributes = std::vector<Attribute>;

/* A document that is always well-formed: an element is closed by what opened it. */
class Html
{
  public:
    using Rewrite = std::function<std::string(const std::string&)>;

    /* `change`, if there is one, is applied to every text and every value of an attribute. */
    explicit Html(Rewrite change = {}) : rewrite(std::move(change)) {}

    /* An open element, which its destructor closes. */
    class Element
    {
      public:
        Element(Html& in, const char* opened) : html(&in), name(opened) {}
        ~Element()
        {
            if (html != nullptr)
                html->close(name);
        }
        Element(Element&& other) noexcept : html(other.html), name(other.name) { other.html = nullptr; }
        Element(const Element&) = delete;
        Element& operator=(const Element&) = delete;
        Element& operator=(Element&&) = delete;

      private:
        Html* html;
        const char* name;
    };
    [[nodiscard]] Element in(const char* name, const Attributes& attributes = {});

    void text(const std::string& content);
    void element(const char* name, const std::string& content) { element(name, {}, content); }
    void element(const char* name, const Attributes& attributes, const std::string& content);

    /* An element without content: of HTML one that has no end tag, of SVG any. */
    void empty(const char* name, const Attributes& attributes = {});

    /* Content of a style or script element, and the first line of the page. It must be the program's own. */
    void own(std::string_view markup) { page += markup; }

    /* A JSON string for a script element. */
    std::string json(const std::string& content) const;

    /* Whether an element has this id. */
    bool hasId(const std::string& id) const { return ids.count(id) != 0; }

    size_t size() const { return page.size(); }
    const std::string& all() const { return page; }

  private:
    void start(const char* name, const Attributes& attributes);
    void close(const char* name);
    std::string rewritten(const std::string& content) const { return rewrite ? rewrite(content) : content; }

    std::string page;
    std::set<std::string> ids;
    Rewrite rewrite;
};

} // namespace algdata

#endif
