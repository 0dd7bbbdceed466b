# SPDX-License-Identifier: Apache-2.0

# find_package(algDataInterface [VERSION] [COMPONENTS static shared tools])
#
# Imports what is installed: alg::data_interface_static, alg::data_interface_shared and the
# program alg::algdata. A component that is named has to be installed.
#
# alg::data_interface is the library that is named first. If none is named, BUILD_SHARED_LIBS
# chooses between those that are installed.

foreach(component static shared tools)
    set(algDataInterface_targets ${CMAKE_CURRENT_LIST_DIR}/algDataInterface-${component}.cmake)
    if(EXISTS ${algDataInterface_targets})
        include(${algDataInterface_targets})
        set(algDataInterface_${component}_FOUND TRUE)
    endif()
endforeach()

# A C host is linked by the C compiler: the module needs no C++ library.
if(TARGET alg::data_interface_static)
    get_target_property(algDataInterface_configurations alg::data_interface_static IMPORTED_CONFIGURATIONS)
    foreach(configuration IN LISTS algDataInterface_configurations)
        set_property(TARGET alg::data_interface_static
                     PROPERTY IMPORTED_LINK_INTERFACE_LANGUAGES_${configuration} C)
    endforeach()
endif()

set(algDataInterface_linkages ${algDataInterface_FIND_COMPONENTS} static shared)
if(BUILD_SHARED_LIBS)
    set(algDataInterface_linkages ${algDataInterface_FIND_COMPONENTS} shared static)
endif()
foreach(linkage IN LISTS algDataInterface_linkages)
    if(TARGET alg::data_interface_${linkage} AND NOT TARGET alg::data_interface)
        add_library(alg::data_interface ALIAS alg::data_interface_${linkage})
    endif()
endforeach()

foreach(component IN LISTS algDataInterface_FIND_COMPONENTS)
    if(algDataInterface_FIND_REQUIRED_${component} AND NOT algDataInterface_${component}_FOUND)
        set(algDataInterface_FOUND FALSE)
        set(algDataInterface_NOT_FOUND_MESSAGE "The component ${component} is not installed.")
    endif()
endforeach()
