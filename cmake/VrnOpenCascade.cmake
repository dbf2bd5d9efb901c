# vrn::opencascade: the OpenCASCADE toolkits that the suite uses. Installed, for those who link it.
find_package(OpenCASCADE REQUIRED)
# Its package accepts no other version than exactly its own, so the least one is checked here.
if(OpenCASCADE_VERSION VERSION_LESS 7.9)
    message(FATAL_ERROR "OpenCASCADE 7.9 or later is needed, found ${OpenCASCADE_VERSION}")
endif()
if(NOT TARGET vrn::opencascade)
    # The package brings visualisation and a test harness along: only the toolkits that are used are linked.
    add_library(vrn::opencascade INTERFACE IMPORTED GLOBAL)
    target_include_directories(vrn::opencascade SYSTEM INTERFACE ${OpenCASCADE_INCLUDE_DIR})
    target_link_libraries(vrn::opencascade INTERFACE
        TKernel TKMath TKG2d TKG3d TKGeomBase TKBRep TKGeomAlgo TKTopAlgo TKPrim TKMesh)
endif()
