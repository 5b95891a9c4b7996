# Installation: the libraries that are built, their headers, the bus interfaces, and what other build
# systems find them by.

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

# quorvane_install_pkgconfig(library name description requirement...)
function(quorvane_install_pkgconfig library name description)
    list(JOIN ARGN ", " requirements)
    string(REGEX REPLACE "^quorvane(.+)$" "quorvane-\\1" file "${library}")
    configure_file("${PROJECT_SOURCE_DIR}/cmake/quorvane.pc.in"
        "${generated_dir}/${file}${QUORVANE_SUFFIX}.pc" @ONLY)
    install(FILES "${generated_dir}/${file}${QUORVANE_SUFFIX}.pc"
        DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig" COMPONENT development)
endfunction()

set(qt Qt${QUORVANE_QT})
quorvane_install_pkgconfig(quorvane "Quorvane" "${PROJECT_DESCRIPTION}"
    "${qt}Core >= ${QUORVANE_QT_VERSION}"
    "${qt}Gui >= ${QUORVANE_QT_VERSION}"
    "${qt}DBus >= ${QUORVANE_QT_VERSION}")

# quorvane_install_library(component): a library that stands on Quorvane, with the headers of its folder,
# as a component that is looked for when it is asked for.
function(quorvane_install_library component)
    string(TOLOWER quorvane${component} library)
    # It finds the others wherever they are installed together.
    set_target_properties(Quorvane${component} PROPERTIES INSTALL_RPATH "$ORIGIN")
    install(TARGETS Quorvane${component} EXPORT ${QUORVANE_PACKAGE}${component}Targets
        LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}"
        COMPONENT library
        NAMELINK_COMPONENT development
    )
    install(EXPORT ${QUORVANE_PACKAGE}${component}Targets NAMESPACE ${QUORVANE_PACKAGE}::
        DESTINATION "${package_dir}" COMPONENT development)

    file(GLOB_RECURSE headers CONFIGURE_DEPENDS RELATIVE "${PROJECT_SOURCE_DIR}"
        "${PROJECT_SOURCE_DIR}/${library}/*.h")
    list(FILTER headers EXCLUDE REGEX "_p\\.h$")
    foreach(header IN LISTS headers)
        get_filename_component(folder "${header}" DIRECTORY)
        install(FILES "${PROJECT_SOURCE_DIR}/${header}"
            DESTINATION "${QUORVANE_INSTALL_INCLUDEDIR}/${folder}" COMPONENT development)
    endforeach()
    install(FILES "${PROJECT_BINARY_DIR}/${library}/${library}_export.h"
        DESTINATION "${QUORVANE_INSTALL_INCLUDEDIR}/${library}" COMPONENT development)
endfunction()

if(TARGET QuorvaneShell)
    quorvane_install_library(Shell)
    quorvane_install_pkgconfig(quorvaneshell "Quorvane Shell"
        "Applications, notifications and the tray as list models for shells of Qt on Linux"
        "quorvane${QUORVANE_SUFFIX} = ${PROJECT_VERSION}")
endif()
if(TARGET QuorvaneWidgets)
    quorvane_install_library(Widgets)
    quorvane_install_pkgconfig(quorvanewidgets "Quorvane Widgets"
        "What shells of Qt Widgets need besides"
        "quorvane-shell${QUORVANE_SUFFIX} = ${PROJECT_VERSION}"
        "${qt}Widgets >= ${QUORVANE_QT_VERSION}")
endif()
