/* SPDX-License-Identifier: Apache-2.0 */
#ifndef ALGDATA_PATH_TEMPLATE_H
#define ALGDATA_PATH_TEMPLATE_H

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "records/kinds.h"

namespace algdata
{

/*
 * A template of paths, such as "{home}/{snapshot}/score_re_{device}.txt". A name in
 * braces is a part of the path, "*" is any text without a name; neither contains a
 * slash. A path has as many components as its template. "KIND=TEMPLATE" also states
 * the kind of the files.
 *
 * Of two names in one component, the first is as short as possible. A name that occurs
 * twice has the same value at both places.
 */
class PathTemplate
{
  public:
    /* The value of each name, by its index; null if it is not known. */
    using Values = std::vector<std::optional<std::string>>;

    /* Throws Failure if the text is not a template. The message begins with where the text is from. */
    explicit PathTemplate(const std::string& written, const char* where = "--path");

    const std::string& text() const { return whole; }
    const Kind* kind() const { return fixed; } /* null if the template states none */
    const std::vector<std::string>& names() const { return allNames; }
    size_t depth() const { return components.size(); }

    /* The first component that has this name. */
    size_t componentOf(size_t name) const;

    /* Returns the values of all names in a path; null if the path does not match. */
    std::optional<Values> parse(std::string_view path) const;

    /*
     * Matches the component at this depth and stores the values that it adds. A value
     * that is already known must be equal. After a mismatch, `values` is unchanged.
     */
    bool match(size_t at, std::string_view component, Values& values) const;

    /*
     * The component at this depth with these values, which is the only one that matches;
     * null if it has "*" or a name without a value.
     */
    std::optional<std::string> build(size_t at, const Values& values) const;

  private:
    static constexpr int maxParts = 4;           /* in one component; each makes matching slower */
    static constexpr size_t anything = SIZE_MAX; /* the name of "*" */
    static constexpr size_t literal = SIZE_MAX - 1;
    struct Piece {
        std::string text; /* of a literal */
        size_t name = literal;
    };
    using Component = std::vector<Piece>;

    Component parsed(std::string_view component);
    size_t indexOf(const std::string& name);
    static bool matchPieces(const Piece* piece, const Piece* end, std::string_view rest, Values& values);
    static bool matchPart(const Piece* piece, const Piece* end, std::string_view rest, Values& values);
    [[noreturn]] void refuse(const std::string& why) const;

    std::string whole;
    const char* from;
    const Kind* fixed = nullptr;
    std::vector<std::string> allNames;
    std::vector<Component> components;
};

/* The last components of a path, as many as the template has; the whole path if it has fewer. */
std::string_view endOfPath(std::string_view path, const PathTemplate& like);

/* The components of a path: "a/b" has two. */
std::vector<std::string_view> componentsOf(std::string_view path);

} // namespace algdata

#endif
