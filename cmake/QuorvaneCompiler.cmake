# What every target of this tree is built with. The public headers ask for C++17 and nothing else.

set(CMAKE_CXX_STANDARD 17)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_AUTOMOC ON)

if(PROJECT_IS_TOP_LEVEL AND NOT CMAKE_BUILD_TYPE)
    set(CMAKE_BUILD_TYPE RelWithDebInfo)
endif()

# clang-tidy has nothing to say about what moc and qdbusxml2cpp write.
file(WRITE "${PROJECT_BINARY_DIR}/.clang-tidy" "Checks: '-*,misc-definitions-in-headers'\n")

if(QUORVANE_SANITIZE)
    add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
    add_link_options(-fsanitize=address,undefined)
endif()

if(QUORVANE_BUILD_FUZZERS)
    add_compile_options(-fsanitize=fuzzer-no-link)
endif()

# quorvane_warnings(target): what all code is built with.
function(quorvane_warnings target)
    # Qt's qCDebug() is a variadic macro that is called without arguments.
    target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic
        $<$<CXX_COMPILER_ID:Clang>:-Wno-gnu-zero-variadic-macro-arguments>)
    target_compile_definitions(${target} PRIVATE QT_NO_KEYWORDS QT_DEPRECATED_WARNINGS)
endfunction()

# quorvane_strict(target): the library and the examples do without Qt's silent conversions, too.
function(quorvane_strict target)
    quorvane_warnings(${target})
    target_compile_definitions(${target} PRIVATE
        QT_NO_CAST_FROM_ASCII
        QT_NO_CAST_TO_ASCII
        QT_NO_URL_CAST_FROM_STRING
        QT_STRICT_ITERATORS
    )
endfunction()
