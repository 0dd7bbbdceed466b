/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Fields in both directions, so that one function names the fields of a record
 * for its reader and for its writer:
 *
 *     template <typename Text, typename Node> static bool bridgingMacs(Text& text, Node& node)
 *     {
 *         return fields(text, FORMAT("%12s %12s "), node.deviceMAC, node.fatherDeviceMAC);
 *     }
 */
#ifndef ALG_DATA_INTERFACE_FIELDS_H
#define ALG_DATA_INTERFACE_FIELDS_H

#include "print.h"
#include "scan.h"

namespace [[gnu::visibility("hidden")]] alg_internal
{

/* Reads fields. Returns the number of fields converted, or -1 if the text ends before the first one. */
template <typename Format, typename... Fields>
int convertFields(TextIn& in, Format format, Fields&... targets)
{
    return scan(in, scannedFormat(format), targets...);
}

/* Prints fields. Returns their number, or -1 if the print fails. */
template <typename Format, typename... Fields>
int convertFields(TextOut& out, Format format, const Fields&... values)
{
    return print(out, printedFormat(format), values...) == -1 ? -1 : static_cast<int>(sizeof...(values));
}

/* Reads or prints fields. False if the text ends first or the print fails. A mismatch is not a failure. */
template <typename Text, typename Format, typename... Fields>
bool fields(Text& text, Format format, Fields&... all)
{
    return convertFields(text, format, all...) != -1;
}

/*
 * Reads or prints the numbers of an array from `at` on, each as fields() does. Returns the place
 * of the first one that fails, or the size of the array. The format's table begins with its blank,
 * which the `+ 1` skips.
 */
template <typename Format, typename Number, size_t size>
int arrayFields(TextIn& in, Format format, Number (&numbers)[size], int at = 0)
{
    using Scanned = decltype(scannedFormat(format));
    static_assert(isArrayFormat(Scanned::text(), KindOf<Number>::value),
                  "the format is not one for the numbers");
    return scanNumbers(in, fieldsOf(Scanned()) + 1, numbers, at, size);
}

template <typename Format, typename Number, size_t size>
int arrayFields(TextOut& out, Format format, const Number (&numbers)[size], int at = 0)
{
    using Printed = decltype(printedFormat(format));
    static_assert(isArrayFormat(Printed::text(), KindOf<Number>::value),
                  "the format is not one for the numbers");
    return printNumbers(out, fieldsOf(Printed()) + 1, numbers, at, size);
}

/* Ends a printed record's line. A reader needs no step for it: a newline is white space. */
inline bool endLine(TextIn& /* in */)
{
    return true;
}

inline bool endLine(TextOut& out)
{
    return print(out, FORMAT("\n")) != -1;
}

} // namespace alg_internal

#endif
