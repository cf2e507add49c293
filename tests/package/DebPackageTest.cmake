# Builds the Debian package of the build folder with CPack and checks what it holds and what it
# depends on.
#   cmake -DBUILD_DIR=... -DWORK_DIR=... -DSTUDIO=ON|OFF -P DebPackageTest.cmake
file(REMOVE_RECURSE ${WORK_DIR})
file(MAKE_DIRECTORY ${WORK_DIR})

function(run output)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE status OUTPUT_VARIABLE out ERROR_VARIABLE err)
  if(NOT status EQUAL 0)
    message(FATAL_ERROR "failed: ${ARGN}\n${out}\n${err}")
  endif()
  set(${output} "${out}" PARENT_SCOPE)
endfunction()

run(ignored cpack -G DEB --config ${BUILD_DIR}/CPackConfig.cmake -B ${WORK_DIR})
file(GLOB packages ${WORK_DIR}/kolvane_*.deb)
list(LENGTH packages count)
if(NOT count EQUAL 1)
  message(FATAL_ERROR "expected one kolvane_<version>_<arch>.deb in ${WORK_DIR}, found: ${packages}")
endif()
if(NOT packages MATCHES "kolvane_[0-9]+\\.[0-9]+\\.[0-9]+_[a-z0-9]+\\.deb$")
  message(FATAL_ERROR "the package is named ${packages}, not kolvane_<version>_<arch>.deb")
endif()

run(contents dpkg-deb --contents ${packages})
set(expected
  ./usr/bin/kolvane
  ./usr/share/man/man1/kolvane.1
  ./usr/include/kolvane/Kolvane.h
  ./usr/include/kolvane/xif/DeviceInterface.h
  ./usr/lib/cmake/Kolvane/KolvaneConfig.cmake
  ./usr/share/kolvane/snvts.xml
  ./usr/share/kolvane/nvotable.xml
  ./usr/share/kolvane/scpts.xml
  ./usr/share/kolvane/units.xml)
if(STUDIO)
  list(APPEND expected ./usr/bin/kolvane-studio ./usr/share/applications/kolvane-studio.desktop
       ./usr/share/icons/hicolor/scalable/apps/kolvane-studio.svg)
endif()
foreach(path IN LISTS expected)
  string(FIND "${contents}" " ${path}\n" at)
  if(at EQUAL -1)
    message(FATAL_ERROR "${path} is not in the package:\n${contents}")
  endif()
endforeach()
if(NOT contents MATCHES " \\./usr/lib/[^ \n]*libkolvane\\.so\\.[0-9]")
  message(FATAL_ERROR "the shared library is not in the package:\n${contents}")
endif()
if(contents MATCHES "foundation/Globals\\.h")
  message(FATAL_ERROR "internal headers are in the package")
endif()

# The control data: the Debian packages the programs link, as dpkg-shlibdeps found them.
run(info dpkg-deb --info ${packages})
set(depends libpugixml1v5 libical3 "libc6 ")
if(STUDIO)
  list(APPEND depends libqt6widgets6)
endif()
foreach(package IN LISTS depends)
  if(NOT info MATCHES "Depends:[^\n]*${package}")
    message(FATAL_ERROR "the package does not depend on ${package}:\n${info}")
  endif()
endforeach()
if(NOT info MATCHES "Package: kolvane\n")
  message(FATAL_ERROR "the package is not called kolvane:\n${info}")
endif()
