# How an integration is built: where it is asked for, or where what it needs is found. The option that
# asks for it, such as ZELSTYLEKIT_QT6, is ON, OFF or AUTO.

# Whether an integration is to be built if it can be.
function(zel_integration_is_wanted result option)
    string(TOUPPER "${${option}}" value)
    set(${result} OFF PARENT_SCOPE)
    if(value STREQUAL "AUTO" OR value)
        set(${result} ON PARENT_SCOPE)
    endif()
endfunction()

# Leaves an integration out, with a line that says why; an error where it was asked for.
function(zel_leave_out_integration option title missing)
    string(TOUPPER "${${option}}" value)
    if(NOT value STREQUAL "AUTO")
        message(FATAL_ERROR "${option} is ${${option}}, but ${missing}")
    endif()
    message(STATUS "ZelStyleKit: the ${title} integration is not built: ${missing}")
endfunction()

# The library of an integration, ZelStyleKit::<name>, from sources of this folder. It is installed as
# the component of that name with the headers in include/, but for those named after HEADERS_WITHOUT.
function(zel_add_integration name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "HEADERS_WITHOUT")
    set(target ZelStyleKit${name})
    add_library(${target} ${arg_UNPARSED_ARGUMENTS})
    add_library(ZelStyleKit::${name} ALIAS ${target})
    zel_library_defaults(${target})
    target_include_directories(${target} PUBLIC $<BUILD_INTERFACE:${CMAKE_CURRENT_SOURCE_DIR}/include>)
    target_link_libraries(${target} PUBLIC ZelStyleKit::ZelStyleKit)
    set_target_properties(${target} PROPERTIES EXPORT_NAME ${name})
    set_property(GLOBAL APPEND PROPERTY ZELSTYLEKIT_COMPONENTS ${name})
    if(ZELSTYLEKIT_INSTALL)
        list(TRANSFORM arg_HEADERS_WITHOUT REPLACE "^(.+)$" "PATTERN;\\1;EXCLUDE")
        install(DIRECTORY include/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}
                COMPONENT ZelStyleKit_Development FILES_MATCHING PATTERN "*.h" ${arg_HEADERS_WITHOUT})
    endif()
endfunction()
