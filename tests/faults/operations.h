/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The module's readers and updates on the file "f", each beside what is
 * expected of it.
 */
#ifndef TESTS_FAULTS_OPERATIONS_H
#define TESTS_FAULTS_OPERATIONS_H

#include "recordOracle.h"

struct Reader {
    const char* name;
    Kind kind;
    bool (*read)(void* records, int count, char (*macs)[16]);
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

/* An update always returns true where its family does, whatever became of it. */
bool tellsResult(const Update& update);

/* Whether "f" holds exactly these bytes. */
bool fileIs(const char* bytes, size_t size);

#endif
