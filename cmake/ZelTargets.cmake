# What every target of the project shares. Nothing here touches a global flag, so that a project which
# adds this one keeps its own.

# Warnings, for our own sources only.
function(zel_warnings target)
    target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wconversion -Wshadow
        $<$<CXX_COMPILER_ID:Clang,AppleClang>:-Wthread-safety>)
    if(ZELSTYLEKIT_WERROR)
        target_compile_options(${target} PRIVATE -Werror)
    endif()
endfunction()

# A library that is installed and exported: C++20, hidden visibility, versioned where shared. With
# ZELSTYLEKIT_SHOW_INTERNALS, a shared one shows everything, so that the tests of its inside can use it.
function(zel_library_defaults target)
    zel_warnings(${target})
    target_compile_features(${target} PUBLIC cxx_std_20)
    set_target_properties(${target} PROPERTIES
        CXX_EXTENSIONS OFF
        CXX_VISIBILITY_PRESET hidden
        VISIBILITY_INLINES_HIDDEN ON
        POSITION_INDEPENDENT_CODE ON
        VERSION ${PROJECT_VERSION}
        SOVERSION ${PROJECT_VERSION_MAJOR})
    target_include_directories(${target}
        PUBLIC $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include>
               $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>
        PRIVATE ${PROJECT_SOURCE_DIR})
    target_compile_definitions(${target} PRIVATE ZELSTYLEKIT_BUILDING)
    get_target_property(type ${target} TYPE)
    if(type STREQUAL "STATIC_LIBRARY")
        target_compile_definitions(${target} PUBLIC ZELSTYLEKIT_STATIC)
    elseif(ZELSTYLEKIT_SHOW_INTERNALS)
        set_target_properties(${target} PROPERTIES
            CXX_VISIBILITY_PRESET default VISIBILITY_INLINES_HIDDEN OFF)
    elseif(UNIX AND NOT APPLE)
        set(symbols ${PROJECT_SOURCE_DIR}/cmake/ZelSymbols.map)
        # Nobody is meant to replace single functions of the library: it calls its own directly.
        target_compile_options(${target} PRIVATE -fno-semantic-interposition)
        target_link_options(${target} PRIVATE
            LINKER:--version-script=${symbols} LINKER:-Bsymbolic-functions)
        set_property(TARGET ${target} APPEND PROPERTY LINK_DEPENDS ${symbols})
    endif()
endfunction()

# Optimised builds: what a program runs once, or a user's hand sets off, is compiled for size, and the
# sources that are run by every read, registration and delivery for speed. Sources of this folder.
# Options of its own keep a source from being compiled together with others: other builds give none.
function(zel_compile_for_speed)
    get_property(multi_config GLOBAL PROPERTY GENERATOR_IS_MULTI_CONFIG)
    if(multi_config OR CMAKE_BUILD_TYPE MATCHES "^(Release|RelWithDebInfo)$")
        set_source_files_properties(${ARGN} DIRECTORY ${PROJECT_SOURCE_DIR} PROPERTIES
            COMPILE_OPTIONS $<$<CONFIG:Release,RelWithDebInfo>:-O2>)
    endif()
endfunction()
function(zel_compile_for_size target)
    target_compile_options(${target} PRIVATE $<$<CONFIG:Release,RelWithDebInfo>:-Os>)
endfunction()
