# Installs, builds the small host against the installation alone, and lets it show a file.

function(run)
    execute_process(COMMAND ${ARGN} RESULT_VARIABLE result OUTPUT_VARIABLE text ERROR_VARIABLE text)
    if(NOT result EQUAL 0)
        list(JOIN ARGN " " line)
        message(FATAL_ERROR "${line}\nended with ${result}:\n${text}")
    endif()
endfunction()

file(REMOVE_RECURSE ${workFolder})
set(prefix ${workFolder}/prefix)
run(${CMAKE_COMMAND} --install ${buildFolder} --prefix ${prefix})

# Copied, so that no include path leads back into the source tree.
file(COPY ${hostProject}/CMakeLists.txt ${hostSource} DESTINATION ${workFolder}/host)
set(flags "")
if(sanitizers)
    set(flags -fsanitize=${sanitizers})
endif()
run(${CMAKE_COMMAND} -S ${workFolder}/host -B ${workFolder}/build -G Ninja -DCMAKE_BUILD_TYPE=Debug
    -DCMAKE_CXX_COMPILER=${compiler} -DCMAKE_CXX_FLAGS=${flags} -DCMAKE_PREFIX_PATH=${prefix})
run(${CMAKE_COMMAND} --build ${workFolder}/build)

file(WRITE ${workFolder}/triangle.stl
    "solid one\nfacet normal 0 0 1\nouter loop\nvertex 0 0 0\nvertex 100 0 0\nvertex 0 100 0\nendloop\nendfacet\nendsolid one\n")
run(${xvfbRun} -a -s "-screen 0 1280x1024x24" ${workFolder}/build/small_host ${workFolder}/triangle.stl 3)

# A file that is refused must reach the host as an error, not as a crash.
file(WRITE ${workFolder}/broken.stl "not an STL file at all, whatever its name says, and long enough to be looked at in earnest")
execute_process(COMMAND ${xvfbRun} -a -s "-screen 0 1280x1024x24" ${workFolder}/build/small_host ${workFolder}/broken.stl 3
    RESULT_VARIABLE result OUTPUT_QUIET ERROR_VARIABLE text)
if(NOT result EQUAL 1 OR NOT text MATCHES "Bad STL File")
    message(FATAL_ERROR "a broken file ended with ${result}: ${text}")
endif()
