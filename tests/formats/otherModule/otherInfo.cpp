/* SPDX-License-Identifier: Apache-2.0 */
#define END "\n"
static bool otherLine(TextIn& in)
{
    /* FORMAT("%hhu in a comment") */
    return fields(in, FORMATS("%12s other", "%12s " /* and */ "more" END));
}
