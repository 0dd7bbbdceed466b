/* SPDX-License-Identifier: Apache-2.0 */
/* Texts for people: characters that are safe on a terminal, and counts with a noun. */
#ifndef ALGDATA_WORDING_H
#define ALGDATA_WORDING_H

#include <string>
#include <string_view>

namespace algdata
{

/*
 * Replaces every byte that is not part of a visible character by \xNN, so that
 * neither a file nor its name can control the terminal. In a UTF-8 locale,
 * characters beyond ASCII stay. Applying it twice changes nothing more.
 */
std::string printable(std::string_view text);

/* A value of a file or of the user, printable, in backquotes, and shortened if it is long. */
std::string inQuotes(std::string_view text);

/* The width of a printable text on a terminal, in columns. */
size_t columnsOf(std::string_view text);

/* "1 record", "2 records", "2 entries". */
std::string plural(size_t count, std::string_view noun);

/* "3 of 256 records", or "256 records" if all are shown. */
std::string countShown(size_t shown, size_t all, std::string_view noun);

/* The text with the letters A to Z in lower case. */
std::string lowered(std::string_view text);

/* Whether a text can have characters beyond ASCII: the locale's character set is UTF-8. */
bool showsUnicode();

/* Sets the character set of the user's locale, which printable() uses. */
void useLocaleCharacters();

} // namespace algdata

#endif
