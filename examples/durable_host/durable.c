/* SPDX-License-Identifier: Apache-2.0 */
#define _XOPEN_SOURCE 700 /* for realpath(); NOLINT(bugprone-reserved-identifier) */
#include "durable.h"

#include <errno.h>
#include <fcntl.h>
#include <libgen.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>
#include <unistd.h>

#include "dataInterface.h"

static bool failed(const char* task, const char* path)
{
    libzo_log("durably: cannot %s %s: %s\n", task, path, strerror(errno));
    return false;
}

/* A rename over a link would replace the link, so find the file. The caller frees the result. */
static char* fileOf(const char* path)
{
    struct stat status;
    char* file = realpath(path, NULL);
    if (file == NULL && errno == ENOENT && lstat(path, &status) != 0 && errno == ENOENT)
        file = strdup(path); /* it does not exist yet */
    if (file == NULL)
        failed("find", path);
    return file;
}

static char* copyNameOf(const char* file)
{
    static const char suffix[] = ".new";
    const size_t size = strlen(file) + sizeof suffix;
    char* copy = malloc(size);
    if (copy == NULL)
        failed("copy", file);
    else
        snprintf(copy, size, "%s%s", file, suffix);
    return copy;
}

static bool copyBytes(int from, int to)
{
    char block[4096];
    for (;;) {
        const ssize_t size = read(from, block, sizeof block);
        if (size <= 0)
            return size == 0;
        for (ssize_t done = 0, written = 0; done < size; done += written) {
            written = write(to, block + done, (size_t)(size - done));
            if (written <= 0)
                return false;
        }
    }
}

/* O_EXCL: the copy is always a new file, never one that a link leads to. */
static bool copyFile(const char* file, const char* copy, const struct stat* status)
{
    const int from = open(file, O_RDONLY | O_CLOEXEC);
    if (from < 0)
        return failed("open", file);
    const int to = open(copy, O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR);
    bool copied = to >= 0 && fchown(to, status->st_uid, status->st_gid) == 0 &&
                  fchmod(to, status->st_mode & 07777) == 0 && copyBytes(from, to);
    if (to >= 0 && close(to) != 0)
        copied = false;
    if (!copied)
        failed("copy the file to", copy);
    close(from);
    return copied;
}

/* Sets `exists` to whether there is a file, and with it a copy. */
static bool prepareCopy(const char* file, const char* copy, bool* exists)
{
    struct stat status;
    *exists = stat(file, &status) == 0;
    if (!*exists && errno != ENOENT)
        return failed("look at", file);
    if (*exists && !S_ISREG(status.st_mode)) {
        libzo_log("durably: %s is not a regular file\n", file);
        return false;
    }
    if (unlink(copy) != 0 && errno != ENOENT)
        return failed("remove the old copy", copy);
    return !*exists || copyFile(file, copy, &status);
}

/* Writes a file or a directory to the disk. */
static bool syncToDisk(const char* path)
{
    const int fd = open(path, O_RDONLY | O_CLOEXEC);
    const bool synced = fd >= 0 && fsync(fd) == 0;
    if (!synced)
        failed("sync", path);
    if (fd >= 0)
        close(fd);
    return synced;
}

static bool changeAndVerify(const char* copy, FileTask change, FileTask verify, void* what)
{
    if (!change(copy, what))
        libzo_log("durably: the change of %s fails\n", copy);
    else if (!verify(copy, what))
        libzo_log("durably: %s does not hold what was meant\n", copy);
    else
        return true;
    return false;
}

static bool replace(const char* file, char* copy, FileTask change, FileTask verify, void* what)
{
    bool exists = false;
    if (!prepareCopy(file, copy, &exists) || !changeAndVerify(copy, change, verify, what)) {
        unlink(copy);
        return false;
    }
    if (!exists && access(copy, F_OK) != 0 && errno == ENOENT)
        return true; /* there was no file, and none was created */
    if (!syncToDisk(copy) || (rename(copy, file) != 0 && !failed("replace", file))) {
        unlink(copy);
        return false;
    }
    return syncToDisk(dirname(copy)); /* the rename survives from here on; dirname() shortens `copy` */
}

bool durably(const char* path, FileTask change, FileTask verify, void* what)
{
    char* file = fileOf(path);
    char* copy = file != NULL ? copyNameOf(file) : NULL;
    const bool done = copy != NULL && replace(file, copy, change, verify, what);
    free(copy);
    free(file);
    return done;
}
