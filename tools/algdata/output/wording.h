/* SPDX-License-Identifier: Apache-2.0 */
/* Words for people: what is safe to print on a terminal, and how much of something there is. */
#ifndef ALGDATA_WORDING_H
#define ALGDATA_WORDING_H

#include <string>
#include <string_view>

namespace algdata
{

/*
 * The text with every byte that is no visible character as \xNN, so that neither
 * a file nor its name can write to the terminal. Characters beyond ASCII stay
 * where the locale is UTF-8. Text that has been through here is not changed again.
 */
std::string printable(std::string_view text);

/* A value of a file or of the user, in backquotes and cut where it is long. */
std::string inQuotes(std::string_view text);

/* Columns that a printable text takes on a terminal. */
size_t columnsOf(std::string_view text);

/* "1 record", "2 records", "2 entries". */
std::string plural(size_t count, std::string_view noun);

/* "3 of 256 records" of what is cut, "256 records" of what is whole. */
std::string share(size_t shown, size_t all, std::string_view noun);

/* Takes the character set from the user's locale, for `printable`. */
void useTerminalCharacters();

} // namespace algdata

#endif
