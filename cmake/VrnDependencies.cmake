# The packages that the library stands on.
find_package(OGRE 14 REQUIRED)
include(VrnOpenCascade)
find_package(PkgConfig REQUIRED)
pkg_check_modules(vrn_minizip REQUIRED IMPORTED_TARGET GLOBAL minizip zlib)
add_library(vrn::minizip ALIAS PkgConfig::vrn_minizip)
