# SPDX-License-Identifier: Apache-2.0
# mandoc warns of nothing in the pages below PAGES.
file(GLOB pages ${PAGES}/*/*.[135])
list(LENGTH pages count)
execute_process(COMMAND ${MANDOC} -Tlint -Wwarning ${pages} OUTPUT_VARIABLE found RESULT_VARIABLE status)
if(NOT status EQUAL 0 OR NOT found STREQUAL "" OR count EQUAL 0)
    message(FATAL_ERROR "${count} pages\n${found}")
endif()
