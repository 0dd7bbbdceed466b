/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The module's readers and updates of the file "f", each with the expected result.
 */
#ifndef TESTS_FAULTS_OPERATIONS_H
#define TESTS_FAULTS_OPERATIONS_H

#include "recordOracle.h"

struct Reader {
    const char* name;
    Kind kind;
    bool (*read)(void* records, int count, char (*macs)[ALG_MAC_SIZE]);
    ExpectedReader expected;
};

struct Update {
    const char* name;
    UpdateRule rule;
    bool (*run)(void* income);
};

enum { READERS = 17, UPDATES = 12 };

extern const Reader readers[READERS];
extern const Update updates[UPDATES];

/* Room for the record of any update. */
union AnyRecord {
    char bytes[sizeof(PatParameterV2)];
    ApInfoAllV2 apAll;
    ScanningInfo scan;
    TimeDelayInfo delay;
    PatParameterV2 pat;
};

/* Whether the update returns false when it fails. updateSingleBridgingInfo() always returns true. */
bool reportsFailure(const Update& update);

/* Whether "f" consists of exactly these bytes. */
bool fileIs(const char* bytes, size_t size);

#endif
