# Adaptors and proxies out of the interface XML files.
#
# A generated file is known only in the folder that generates it, while the library is a target of
# the folder above. So the folder gets a target that makes the files, which the library waits for.

function(_quorvane_add_glue target)
    set_source_files_properties(${ARGN} TARGET_DIRECTORY ${target} PROPERTIES
        GENERATED TRUE
        SKIP_AUTOMOC TRUE
    )
    target_sources(${target} PRIVATE ${ARGN})
    set(header ${ARGN})
    list(FILTER header INCLUDE REGEX "\\.h$")
    get_filename_component(name "${header}" NAME_WE)
    add_custom_target(${target}_${name} DEPENDS ${ARGN})
    add_dependencies(${target} ${target}_${name})
endfunction()

# quorvane_add_dbus_adaptor(target interface.xml parentheader.h ParentClass basename ClassName)
function(quorvane_add_dbus_adaptor target xml header parent basename class)
    qt_add_dbus_adaptor(glue ${xml} ${header} ${parent} ${basename} ${class})
    _quorvane_add_glue(${target} ${glue})
endfunction()

# quorvane_add_dbus_interface(target interface.xml exportheader.h basename)
function(quorvane_add_dbus_interface target xml header basename)
    set_source_files_properties(${xml} PROPERTIES NO_NAMESPACE TRUE INCLUDE ${header})
    qt_add_dbus_interface(glue ${xml} ${basename})
    _quorvane_add_glue(${target} ${glue})
endfunction()
