/* SPDX-License-Identifier: Apache-2.0 */
/* A module that differs from the description: the check has to report the differences. */
bool otherInfoReader(const char* path, TimeDelayInfo* records);
