# SPDX-License-Identifier: Apache-2.0

# The files that CMake and pkg-config read to find the module, and its installation:
#
#   runtime      the shared library, for programs
#   development  headers, static library, link to the shared one, CMake package, .pc file
#   manual       manual pages of sections 3 and 5, see docs/reference/CMakeLists.txt
#   tools        the command algdata, see tools/algdata/CMakeLists.txt
#
# One build makes the static or the shared library. To have both, install both builds
# into one prefix.
include(CMakePackageConfigHelpers)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/algDataInterfaceConfigVersion.cmake
    COMPATIBILITY SameMajorVersion)

# Relative to the .pc file, so that an installed tree can be moved, unless a directory is absolute.
if(IS_ABSOLUTE "${CMAKE_INSTALL_LIBDIR}")
    set(ALG_PC_PREFIX ${CMAKE_INSTALL_PREFIX})
else()
    set(upwards /prefix)
    cmake_path(RELATIVE_PATH upwards BASE_DIRECTORY /prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig)
    set(ALG_PC_PREFIX "\${pcfiledir}/${upwards}")
endif()
# Appending an absolute path replaces the prefix.
cmake_path(APPEND ALG_PC_LIBDIR "\${prefix}" "${CMAKE_INSTALL_LIBDIR}")
cmake_path(APPEND ALG_PC_INCLUDEDIR "\${prefix}" "${CMAKE_INSTALL_INCLUDEDIR}" algDataInterface)
configure_file(cmake/alg-data-interface.pc.in ${PROJECT_BINARY_DIR}/alg-data-interface.pc @ONLY)

set(ALG_PACKAGE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/algDataInterface)
if(NOT ALG_INSTALL)
    return()
endif()
set(linkage static)
if(BUILD_SHARED_LIBS)
    set(linkage shared)
endif()
set_target_properties(alg_data_interface PROPERTIES EXPORT_NAME data_interface_${linkage})
install(TARGETS alg_data_interface EXPORT algDataInterface-${linkage}
        ARCHIVE COMPONENT development
        LIBRARY COMPONENT runtime NAMELINK_COMPONENT development
        INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/algDataInterface)
install(EXPORT algDataInterface-${linkage} NAMESPACE alg:: DESTINATION ${ALG_PACKAGE_DIR}
        COMPONENT development)
install(FILES cmake/algDataInterfaceConfig.cmake ${PROJECT_BINARY_DIR}/algDataInterfaceConfigVersion.cmake
        DESTINATION ${ALG_PACKAGE_DIR} COMPONENT development)
install(FILES ${PROJECT_BINARY_DIR}/alg-data-interface.pc
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)
install(FILES alg/dataInterface.h alg/algDataInterfaceStruct.h alg/algDefines.h alg/capacities.h
              alg/ai_macros.h
        DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/algDataInterface COMPONENT development)
