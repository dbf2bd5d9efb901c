# What `cmake --install` gives: headers, libraries, the resource package, and a CMake package for the library
# and for each sibling, so that a host needs find_package(vrnvisual) and nothing of this tree.
include(CMakePackageConfigHelpers)

# vrn_install(TARGET NAME DEPENDENCIES ...): installs TARGET as vrn::NAME in a package of the target's name.
function(vrn_install target name)
    cmake_parse_arguments(arg "" "" "DEPENDENCIES" ${ARGN})
    set(folder ${CMAKE_INSTALL_LIBDIR}/cmake/${target})
    set_target_properties(${target} PROPERTIES EXPORT_NAME ${name})
    install(TARGETS ${target} EXPORT ${target}Targets
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
        FILE_SET HEADERS DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/vrnvisual)
    install(EXPORT ${target}Targets NAMESPACE vrn:: DESTINATION ${folder})
    set(findDependencies "include(CMakeFindDependencyMacro)\n")
    foreach(dependency IN LISTS arg_DEPENDENCIES)
        if(dependency STREQUAL "opencascade")
            install(FILES ${PROJECT_SOURCE_DIR}/cmake/VrnOpenCascade.cmake DESTINATION ${folder})
            string(APPEND findDependencies "include(\"\${CMAKE_CURRENT_LIST_DIR}/VrnOpenCascade.cmake\")\n")
        else()
            string(APPEND findDependencies "find_dependency(${dependency})\n")
        endif()
    endforeach()
    set(config ${PROJECT_BINARY_DIR}/packages/${target}Config.cmake)
    file(CONFIGURE OUTPUT ${config} @ONLY CONTENT
"@findDependencies@include(\"\${CMAKE_CURRENT_LIST_DIR}/@target@Targets.cmake\")
")
    write_basic_package_version_file(${PROJECT_BINARY_DIR}/packages/${target}ConfigVersion.cmake
        VERSION ${PROJECT_VERSION} COMPATIBILITY SameMinorVersion)
    install(FILES ${config} ${PROJECT_BINARY_DIR}/packages/${target}ConfigVersion.cmake DESTINATION ${folder})
endfunction()

if(VRN_SUITE STREQUAL "bundled")
    vrn_install(vrnrob rob)
    vrn_install(vrnbroker broker)
    vrn_install(vrncommon common)
    vrn_install(vrnsdf sdf DEPENDENCIES vrnrob)
    vrn_install(vrngeom geom DEPENDENCIES vrnrob vrnsdf opencascade)
    vrn_install(vrnlayout layout DEPENDENCIES vrnrob vrnsdf vrngeom vrncommon opencascade)
    vrn_install(vrntask task DEPENDENCIES vrnrob vrnsdf vrngeom opencascade)
    vrn_install(vrnsmart smart DEPENDENCIES vrnrob vrnsdf)
endif()
vrn_install(vrnvisual visual DEPENDENCIES
    vrnrob vrnsdf vrnlayout vrntask vrngeom vrnsmart vrnbroker vrncommon OGRE opencascade)
