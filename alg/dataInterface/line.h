/* SPDX-License-Identifier: Apache-2.0 */
#ifndef ALG_DATA_INTERFACE_LINE_H
#define ALG_DATA_INTERFACE_LINE_H

/*
 * Size of every line buffer: one read takes at most 1023 characters. The
 * counter and the readers that go line by line share it, so that the count is
 * the number of records that such a reader fills.
 */
enum { LINE_BUFFER_SIZE = 1024 };

#endif
