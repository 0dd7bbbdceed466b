/* SPDX-License-Identifier: Apache-2.0 */
/* A module that is not the described one, for the check to find. */
bool otherInfoReader(const char* path, TimeDelayInfo* records);
