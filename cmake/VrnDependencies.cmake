# The packages that the library stands on. Also installed, for hosts that find_package(vrnvisual).
find_package(OGRE 14 REQUIRED)
find_package(OpenCASCADE REQUIRED)
# Its package accepts no other version than exactly its own, so the least one is checked here.
if(OpenCASCADE_VERSION VERSION_LESS 7.9)
    message(FATAL_ERROR "OpenCASCADE 7.9 or later is needed, found ${OpenCASCADE_VERSION}")
endif()
find_package(PkgConfig REQUIRED)
pkg_check_modules(vrn_minizip REQUIRED IMPORTED_TARGET GLOBAL minizip zlib)

if(NOT TARGET vrn::opencascade)
    # Its packages carry visualisation and a test harness along: only the toolkits that are used are linked.
    add_library(vrn::opencascade INTERFACE IMPORTED GLOBAL)
    target_include_directories(vrn::opencascade SYSTEM INTERFACE ${OpenCASCADE_INCLUDE_DIR})
    target_link_libraries(vrn::opencascade INTERFACE
        TKernel TKMath TKG2d TKG3d TKGeomBase TKBRep TKGeomAlgo TKTopAlgo TKPrim TKMesh)
endif()
if(NOT TARGET vrn::minizip)
    add_library(vrn::minizip ALIAS PkgConfig::vrn_minizip)
endif()
