# What is installed: the core, every integration that was built, the command, and the files by which
# other builds find them. Whatever is installed can be moved: nothing in it names the prefix.
#
# An integration becomes a component, `find_package(ZelStyleKit COMPONENTS Portal)` and
# `zelstylekit-portal.pc`, by adding its name to the global property ZELSTYLEKIT_COMPONENTS; its
# target is ZelStyleKit<name>. Properties of the target say what its users need beside it:
#   EXPORT_NAME             the name after ZelStyleKit::, the component's unless set
#   ZELSTYLEKIT_REQUIRES    other components that it builds on
#   ZELSTYLEKIT_PACKAGES    arguments of find_package, one string for each package, that its users
#                           need in every case: "Qt6 6.4 COMPONENTS Gui"
#   ZELSTYLEKIT_PKG_CONFIG  pkg-config modules that a static build's users have to link with it, each
#                           with the prefix of its imported target: "ZELSTYLEKIT_SYSTEMD=libsystemd"
#   ZELSTYLEKIT_PKG_CONFIG_PUBLIC  the same for those that its users need in every case
#   ZELSTYLEKIT_PC_REQUIRES pkg-config modules that its users need in every case: "Qt6Gui >= 6.4"

include(CMakePackageConfigHelpers)

set(ZELSTYLEKIT_PACKAGE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/ZelStyleKit)
set(ZELSTYLEKIT_GENERATED ${CMAKE_CURRENT_BINARY_DIR}/package)

# The path from one installed folder to another, both relative to the prefix or absolute.
function(zel_installed_path result from to)
    get_filename_component(from "${from}" ABSOLUTE BASE_DIR /prefix)
    get_filename_component(to "${to}" ABSOLUTE BASE_DIR /prefix)
    file(RELATIVE_PATH path "${from}" "${to}")
    string(REGEX REPLACE "/$" "" path "${path}")
    set(${result} "${path}" PARENT_SCOPE)
endfunction()

# A folder as a pkg-config file spells it: below its prefix, or as it is.
function(zel_pkg_config_path result folder)
    if(IS_ABSOLUTE "${folder}")
        set(${result} "${folder}" PARENT_SCOPE)
    else()
        set(${result} "\${prefix}/${folder}" PARENT_SCOPE)
    endif()
endfunction()

# zelstylekit.pc for the core, zelstylekit-<name>.pc for a component.
function(zel_install_pkg_config target module description)
    cmake_parse_arguments(PARSE_ARGV 3 ARG "" "" "REQUIRES;REQUIRES_PRIVATE;LIBS_PRIVATE")
    zel_installed_path(PC_TO_PREFIX ${CMAKE_INSTALL_LIBDIR}/pkgconfig .)
    zel_pkg_config_path(PC_LIBDIR "${CMAKE_INSTALL_LIBDIR}")
    zel_pkg_config_path(PC_INCLUDEDIR "${CMAKE_INSTALL_INCLUDEDIR}")
    set(PC_NAME ${target})
    set(PC_DESCRIPTION "${description}")
    list(JOIN ARG_REQUIRES ", " PC_REQUIRES)
    list(JOIN ARG_REQUIRES_PRIVATE ", " PC_REQUIRES_PRIVATE)
    list(JOIN ARG_LIBS_PRIVATE " " PC_LIBS_PRIVATE)
    get_target_property(type ${target} TYPE)
    set(PC_DEFINES "")
    if(type STREQUAL "STATIC_LIBRARY")
        set(PC_DEFINES " -DZELSTYLEKIT_STATIC")
    endif()
    configure_file(${PROJECT_SOURCE_DIR}/cmake/ZelStyleKit.pc.in
                   ${ZELSTYLEKIT_GENERATED}/${module}.pc @ONLY)
    install(FILES ${ZELSTYLEKIT_GENERATED}/${module}.pc
            DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT ZelStyleKit_Development)
endfunction()

# The library's files, and its imported target in ZelStyleKit<name>Targets.cmake.
function(zel_install_library target)
    install(TARGETS ${target} EXPORT ${target}Targets
        RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT ZelStyleKit_Runtime
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT ZelStyleKit_Runtime
                NAMELINK_COMPONENT ZelStyleKit_Development
        ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT ZelStyleKit_Development)
    install(EXPORT ${target}Targets NAMESPACE ZelStyleKit::
            DESTINATION ${ZELSTYLEKIT_PACKAGE_DIR} COMPONENT ZelStyleKit_Development)
endfunction()

# The statements by which a component's file finds what its users need; on the first that is missing
# the file ends, and says so in ZelStyleKit_MISSING.
function(zel_component_finds result target)
    set(finds "")
    set(require [[
if(NOT @found@)
    set(ZelStyleKit_MISSING "@what@")
    return()
endif()
]])
    get_target_property(packages ${target} ZELSTYLEKIT_PACKAGES)
    foreach(package IN LISTS packages)
        if(package)
            string(REGEX MATCH "^[^ ]+" what "${package}")
            set(found ${what}_FOUND)
            string(CONFIGURE "${require}" check @ONLY)
            string(APPEND finds "find_package(${package} QUIET)\n${check}")
        endif()
    endforeach()
    get_target_property(modules ${target} ZELSTYLEKIT_PKG_CONFIG)
    get_target_property(type ${target} TYPE)
    if(NOT modules OR NOT type STREQUAL "STATIC_LIBRARY")
        set(modules "")
    endif()
    get_target_property(public_modules ${target} ZELSTYLEKIT_PKG_CONFIG_PUBLIC)
    if(public_modules)
        list(APPEND modules ${public_modules})
    endif()
    if(modules)
        set(what "pkg-config")
        set(found PkgConfig_FOUND)
        string(CONFIGURE "${require}" check @ONLY)
        string(APPEND finds "find_package(PkgConfig QUIET)\n${check}")
        foreach(module IN LISTS modules)
            string(REGEX MATCH "^([^=]+)=(.+)$" matched "${module}")
            set(what ${CMAKE_MATCH_2})
            set(prefix ${CMAKE_MATCH_1})
            set(found ${prefix}_FOUND)
            string(CONFIGURE "${require}" check @ONLY)
            string(APPEND finds
                   "pkg_check_modules(${prefix} QUIET IMPORTED_TARGET \"${what}\")\n${check}")
        endforeach()
    endif()
    set(${result} "${finds}" PARENT_SCOPE)
endfunction()

# An integration that was built: its library, its part of the CMake package, its pkg-config file.
function(zel_install_component name)
    set(target ZelStyleKit${name})
    get_target_property(export_name ${target} EXPORT_NAME)
    if(NOT export_name)
        set_target_properties(${target} PROPERTIES EXPORT_NAME ${name})
    endif()
    if(UNIX AND NOT APPLE)
        # The core lies beside it.
        set_target_properties(${target} PROPERTIES INSTALL_RPATH "\$ORIGIN")
    endif()
    zel_install_library(${target})

    get_target_property(required ${target} ZELSTYLEKIT_REQUIRES)
    get_target_property(pc_requires ${target} ZELSTYLEKIT_PC_REQUIRES)
    get_target_property(modules ${target} ZELSTYLEKIT_PKG_CONFIG)
    get_target_property(public_modules ${target} ZELSTYLEKIT_PKG_CONFIG_PUBLIC)
    foreach(list IN ITEMS required pc_requires modules public_modules)
        if(NOT ${list})
            set(${list} "")
        endif()
    endforeach()
    set(COMPONENT_TARGET ${target})
    set(COMPONENT_REQUIRES "${required}")
    zel_component_finds(COMPONENT_FINDS ${target})
    string(CONFIGURE [[# The component's targets, and what they need.
foreach(ZelStyleKit_required IN ITEMS @COMPONENT_REQUIRES@)
    include("${CMAKE_CURRENT_LIST_DIR}/${ZelStyleKit_required}.cmake" OPTIONAL
            RESULT_VARIABLE ZelStyleKit_found)
    if(NOT ZelStyleKit_found)
        set(ZelStyleKit_MISSING "the component ${ZelStyleKit_required}")
    endif()
    if(ZelStyleKit_MISSING)
        return()
    endif()
endforeach()
@COMPONENT_FINDS@include("${CMAKE_CURRENT_LIST_DIR}/../@COMPONENT_TARGET@Targets.cmake")
]] text @ONLY)
    file(CONFIGURE OUTPUT ${ZELSTYLEKIT_GENERATED}/components/${name}.cmake CONTENT "${text}" @ONLY)
    install(FILES ${ZELSTYLEKIT_GENERATED}/components/${name}.cmake
            DESTINATION ${ZELSTYLEKIT_PACKAGE_DIR}/components COMPONENT ZelStyleKit_Development)

    foreach(list IN ITEMS modules public_modules)
        list(TRANSFORM ${list} REPLACE "^[^=]+=(.+)$" "\\1")
        list(TRANSFORM ${list} REPLACE " *([<>=]+) *" " \\1 ")
    endforeach()
    list(TRANSFORM required TOLOWER)
    list(TRANSFORM required PREPEND zelstylekit-)
    string(TOLOWER zelstylekit-${name} module)
    zel_install_pkg_config(${target} ${module} "The ${name} integration of ZelStyleKit"
        REQUIRES "zelstylekit = ${PROJECT_VERSION}" ${required} ${public_modules}
                 ${pc_requires}
        REQUIRES_PRIVATE ${modules})
endfunction()

# The core. A static one has to be linked with the C++ library where the linker isn't a C++ compiler.
zel_install_library(ZelStyleKit)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}
        COMPONENT ZelStyleKit_Development FILES_MATCHING PATTERN "*.h")
install(FILES ${PROJECT_SOURCE_DIR}/LICENSE DESTINATION ${CMAKE_INSTALL_DOCDIR}
        COMPONENT ZelStyleKit_Development)
set(cxx_libraries ${CMAKE_CXX_IMPLICIT_LINK_LIBRARIES})
list(FILTER cxx_libraries INCLUDE REGEX "^(stdc\\+\\+|c\\+\\+|c\\+\\+abi|m)$")
list(REMOVE_DUPLICATES cxx_libraries)
list(TRANSFORM cxx_libraries PREPEND -l)
zel_install_pkg_config(ZelStyleKit zelstylekit "${PROJECT_DESCRIPTION}"
    LIBS_PRIVATE ${cxx_libraries})

configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/ZelStyleKitConfig.cmake.in
    ${ZELSTYLEKIT_GENERATED}/ZelStyleKitConfig.cmake
    INSTALL_DESTINATION ${ZELSTYLEKIT_PACKAGE_DIR}
    NO_SET_AND_CHECK_MACRO NO_CHECK_REQUIRED_COMPONENTS_MACRO)
write_basic_package_version_file(${ZELSTYLEKIT_GENERATED}/ZelStyleKitConfigVersion.cmake
    COMPATIBILITY SameMajorVersion)
install(FILES ${ZELSTYLEKIT_GENERATED}/ZelStyleKitConfig.cmake
              ${ZELSTYLEKIT_GENERATED}/ZelStyleKitConfigVersion.cmake
        DESTINATION ${ZELSTYLEKIT_PACKAGE_DIR} COMPONENT ZelStyleKit_Development)

get_property(components GLOBAL PROPERTY ZELSTYLEKIT_COMPONENTS)
foreach(component IN LISTS components)
    zel_install_component(${component})
endforeach()

if(TARGET zelstyle)
    if(UNIX AND NOT APPLE)
        zel_installed_path(libraries ${CMAKE_INSTALL_BINDIR} ${CMAKE_INSTALL_LIBDIR})
        set_target_properties(zelstyle PROPERTIES INSTALL_RPATH "\$ORIGIN/${libraries}")
    endif()
    install(TARGETS zelstyle RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
            COMPONENT ZelStyleKit_Runtime)
endif()
