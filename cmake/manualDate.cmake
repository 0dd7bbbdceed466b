# SPDX-License-Identifier: Apache-2.0

# Sets ALG_MANUAL_DATE, the date of the manual pages: that of the release in
# CHANGELOG.md. Before the release it is SOURCE_DATE_EPOCH or today.
set(released "^## \\[${PROJECT_VERSION}\\] - ([0-9-]+)$")
file(STRINGS ${PROJECT_SOURCE_DIR}/CHANGELOG.md ALG_MANUAL_DATE REGEX ${released})
if(ALG_MANUAL_DATE)
    string(REGEX REPLACE ${released} "\\1" ALG_MANUAL_DATE ${ALG_MANUAL_DATE})
else()
    string(TIMESTAMP ALG_MANUAL_DATE "%Y-%m-%d" UTC)
endif()
