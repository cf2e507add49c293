# Installs the built project into a scratch prefix, then builds and runs a host program that finds
# it with find_package(Kolvane).
#   cmake -DBUILD_DIR=... -DSOURCE_DIR=... -DWORK_DIR=... -DCXX_FLAGS=... -P FindPackageTest.cmake
file(REMOVE_RECURSE ${WORK_DIR})
set(prefix ${WORK_DIR}/prefix)

function(run)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE status OUTPUT_VARIABLE out ERROR_VARIABLE out)
  if(NOT status EQUAL 0)
    message(FATAL_ERROR "failed: ${ARGN}\n${out}")
  endif()
endfunction()

run(${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${prefix})
run(${CMAKE_COMMAND} -S ${SOURCE_DIR}/tests/package/consumer -B ${WORK_DIR}/consumer -G Ninja
    -DCMAKE_PREFIX_PATH=${prefix} "-DCMAKE_CXX_FLAGS=${CXX_FLAGS}"
    "-DCMAKE_EXE_LINKER_FLAGS=${LINKER_FLAGS}")
run(${CMAKE_COMMAND} --build ${WORK_DIR}/consumer)
run(${WORK_DIR}/consumer/consumer)
if(NOT EXISTS ${prefix}/share/kolvane/snvts.xml OR NOT EXISTS ${prefix}/bin/kolvane)
  message(FATAL_ERROR "the catalogue or the tool was not installed")
endif()
# Internal headers stay out of the installed tree.
if(EXISTS ${prefix}/include/kolvane/foundation/Globals.h)
  message(FATAL_ERROR "internal headers were installed")
endif()
