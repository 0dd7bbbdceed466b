# SPDX-License-Identifier: Apache-2.0

# alg_find_optional(<found> <part> [<package> <Debian package>]...)
#
# Finds the packages that an optional part of the build needs, and sets <found>. If
# one is missing, a warning says what to install; the caller then skips the part.
function(alg_find_optional found part)
    set(missing "")
    set(packages ${ARGN})
    while(packages)
        list(POP_FRONT packages package debian)
        find_package(${package} QUIET)
        if(NOT ${package}_FOUND)
            list(APPEND missing ${debian})
        endif()
    endwhile()
    if(missing)
        list(JOIN missing " " missing)
        message(WARNING "${part} is skipped: on Debian, install ${missing} to build it.")
        set(${found} FALSE PARENT_SCOPE)
    else()
        set(${found} TRUE PARENT_SCOPE)
    endif()
endfunction()
