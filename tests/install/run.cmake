# Installs into a scratch folder, builds a host against it in a build of its own, and runs a program of it there if one
# is named.
function(run)
  execute_process(COMMAND ${ARGN} WORKING_DIRECTORY ${SCRATCH}
    RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
  if(NOT result EQUAL 0)
    message(FATAL_ERROR "${ARGN}\nfailed (${result}):\n${output}")
  endif()
endfunction()

file(REMOVE_RECURSE ${SCRATCH})
file(MAKE_DIRECTORY ${SCRATCH})
run(${CMAKE_COMMAND} --install ${BUILD} --prefix ${SCRATCH}/usr)
run(${CMAKE_COMMAND} -S ${SOURCE} -B ${SCRATCH}/host -G Ninja -DCMAKE_PREFIX_PATH=${SCRATCH}/usr
  -DCMAKE_CXX_COMPILER=${COMPILER} -DCMAKE_CXX_COMPILER_LAUNCHER=${LAUNCHER})
run(${CMAKE_COMMAND} --build ${SCRATCH}/host)
if(PROGRAM)
  run(${SCRATCH}/host/${PROGRAM})
endif()
