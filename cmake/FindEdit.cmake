# SPDX-License-Identifier: Apache-2.0

# Finds libedit, which edits the lines of a prompt: Edit::Edit.
find_path(Edit_INCLUDE_DIR editline/readline.h)
find_library(Edit_LIBRARY edit)
include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(Edit REQUIRED_VARS Edit_LIBRARY Edit_INCLUDE_DIR)
if(Edit_FOUND AND NOT TARGET Edit::Edit)
    add_library(Edit::Edit UNKNOWN IMPORTED)
    set_target_properties(Edit::Edit PROPERTIES
        IMPORTED_LOCATION ${Edit_LIBRARY}
        INTERFACE_INCLUDE_DIRECTORIES ${Edit_INCLUDE_DIR})
endif()
