/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Updates of record files that survive a power cut. Copy durable.h and durable.c
 * into your host.
 */
#ifndef DURABLE_HOST_DURABLE_H
#define DURABLE_HOST_DURABLE_H

#include <stdbool.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Works on the file `path`. Returns false if that fails. `what` is the argument of the caller. */
typedef bool (*FileTask)(const char* path, void* what);

/*
 * Changes the record file `path` so that it holds its old records or its new ones at
 * every moment, whenever the power is cut:
 *   - copies it to `path`.new, which replaces the copy that a cut has left behind;
 *   - calls `change`, which calls one or more functions of the module on the copy;
 *   - calls `verify`, which reads the copy and compares it with what was meant;
 *   - writes the copy to the disk and renames it over the file.
 *
 * If the file is missing, so is the copy. `change` can leave it missing, as a delete
 * does, if `verify` accepts that. Some functions of the module always return the same
 * value. Let `change` return true after these; `verify` finds a failure.
 *
 * The file keeps its permissions and its owner; only root can change a file of another
 * user. A symbolic link stays a link: the file that it leads to is replaced. Another hard
 * link keeps the old records. The directory must be writable and have room for the copy.
 *
 * Returns false if anything fails, and logs what. The file is then as it was, and the
 * copy is removed. There is one exception: if the directory cannot be synced after the
 * rename, the file has its new records, but a power cut can bring back the old ones.
 *
 * Allow only one call at a time on a file.
 */
bool durably(const char* path, FileTask change, FileTask verify, void* what);

#ifdef __cplusplus
}
#endif

#endif
