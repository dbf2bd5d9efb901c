# The packages that the library stands on.
find_package(OGRE 14 REQUIRED)
include(VrnOpenCascade)
find_package(PkgConfig REQUIRED)
pkg_check_modules(vrn_minizip REQUIRED IMPORTED_TARGET GLOBAL minizip zlib)
add_library(vrn::minizip ALIAS PkgConfig::vrn_minizip)

# What the host alone stands on.
pkg_check_modules(vrn_kdl REQUIRED IMPORTED_TARGET GLOBAL orocos_kdl)
add_library(vrn::kdl ALIAS PkgConfig::vrn_kdl)
