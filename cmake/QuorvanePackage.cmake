# Installation: the library, its headers, the bus interfaces, and what other build systems find it by.

include(CMakePackageConfigHelpers)

set(package_dir "${CMAKE_INSTALL_LIBDIR}/cmake/${QUORVANE_PACKAGE}")
set(generated_dir "${PROJECT_BINARY_DIR}/package")

install(TARGETS Quorvane EXPORT ${QUORVANE_PACKAGE}Targets
    LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}"
    COMPONENT library
    NAMELINK_COMPONENT development
)

foreach(header_root IN ITEMS "${PROJECT_SOURCE_DIR}" "${PROJECT_BINARY_DIR}")
    install(DIRECTORY "${header_root}/quorvane" DESTINATION "${QUORVANE_INSTALL_INCLUDEDIR}"
        COMPONENT development
        FILES_MATCHING
        PATTERN "*.h"
        PATTERN "*_p.h" EXCLUDE
        PATTERN "CMakeFiles" EXCLUDE
        PATTERN "Quorvane_autogen" EXCLUDE
    )
endforeach()
file(GLOB bus_interfaces CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/quorvane/*/*.xml")
install(FILES ${bus_interfaces} DESTINATION "${CMAKE_INSTALL_DATADIR}/dbus-1/interfaces"
    COMPONENT development)

configure_package_config_file("${CMAKE_CURRENT_LIST_DIR}/QuorvaneConfig.cmake.in"
    "${generated_dir}/${QUORVANE_PACKAGE}Config.cmake" INSTALL_DESTINATION "${package_dir}")
write_basic_package_version_file("${generated_dir}/${QUORVANE_PACKAGE}ConfigVersion.cmake"
    COMPATIBILITY SameMajorVersion)
install(EXPORT ${QUORVANE_PACKAGE}Targets NAMESPACE ${QUORVANE_PACKAGE}::
    DESTINATION "${package_dir}" COMPONENT development)
install(FILES "${generated_dir}/${QUORVANE_PACKAGE}Config.cmake"
    "${generated_dir}/${QUORVANE_PACKAGE}ConfigVersion.cmake" DESTINATION "${package_dir}"
    COMPONENT development)

# Relative to the file itself, so that an installation can be moved.
file(RELATIVE_PATH pkgconfig_to_prefix
    "${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig" "${CMAKE_INSTALL_PREFIX}")
cmake_path(ABSOLUTE_PATH QUORVANE_INSTALL_INCLUDEDIR BASE_DIRECTORY "${CMAKE_INSTALL_PREFIX}"
    OUTPUT_VARIABLE include_dir)
file(RELATIVE_PATH pkgconfig_to_include
    "${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig" "${include_dir}")
configure_file("${CMAKE_CURRENT_LIST_DIR}/quorvane.pc.in" "${generated_dir}/quorvane${QUORVANE_SUFFIX}.pc"
    @ONLY)
install(FILES "${generated_dir}/quorvane${QUORVANE_SUFFIX}.pc"
    DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig" COMPONENT development)
