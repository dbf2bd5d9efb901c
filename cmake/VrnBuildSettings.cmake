# How everything in this tree is compiled and linked.

set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/lib)
set(CMAKE_ARCHIVE_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/lib)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)

find_program(ccacheProgram ccache)
if(ccacheProgram)
    set(CMAKE_CXX_COMPILER_LAUNCHER ${ccacheProgram})
endif()
find_program(moldProgram mold)
if(moldProgram)
    set(CMAKE_LINKER_TYPE MOLD)
endif()

if(VRN_SANITIZERS)
    # OpenCASCADE's mesher keeps list nodes less aligned than their type asks, and calls the copies of
    # its inline functions that our code instantiates: the alignment check would stop in them.
    add_compile_options(-fsanitize=${VRN_SANITIZERS} -fno-sanitize=alignment -fno-omit-frame-pointer
        -fno-sanitize-recover=undefined)
    add_link_options(-fsanitize=${VRN_SANITIZERS})
endif()

add_library(vrn_warnings INTERFACE)
target_compile_options(vrn_warnings INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wno-sign-conversion -Wnon-virtual-dtor
    -Woverloaded-virtual $<$<BOOL:${VRN_WERROR}>:-Werror>)

# vrn_library(NAME): the settings every library of this tree shares.
function(vrn_library name)
    target_compile_features(${name} PUBLIC cxx_std_20)
    target_link_libraries(${name} PRIVATE $<BUILD_INTERFACE:vrn_warnings>)
    set_target_properties(${name} PROPERTIES
        CXX_EXTENSIONS OFF
        CXX_VISIBILITY_PRESET hidden
        VISIBILITY_INLINES_HIDDEN ON
        VERIFY_INTERFACE_HEADER_SETS ON
        VERSION ${PROJECT_VERSION}
        SOVERSION ${PROJECT_VERSION_MAJOR}
        # Never empty: not every linker keeps the blank entry that an installation would write over.
        BUILD_RPATH "$ORIGIN"
        INSTALL_RPATH "$ORIGIN")
endfunction()

# vrn_program(NAME): the settings of programs and tests.
function(vrn_program name)
    target_compile_features(${name} PRIVATE cxx_std_20)
    target_link_libraries(${name} PRIVATE vrn_warnings)
    set_target_properties(${name} PROPERTIES CXX_EXTENSIONS OFF INSTALL_RPATH "$ORIGIN/../${CMAKE_INSTALL_LIBDIR}")
endfunction()
