# GTest::gtest_main and GTest::gmock: the installed libraries, or, for Windows, built from the sources that Debian ships.
if(NOT CMAKE_CROSSCOMPILING)
  find_package(GTest REQUIRED)
  return()
endif()

set(INSTALL_GTEST OFF)
set(gtest_disable_pthreads ON CACHE BOOL "")
add_subdirectory(/usr/src/googletest ${CMAKE_BINARY_DIR}/googletest EXCLUDE_FROM_ALL)
foreach(library gtest gtest_main gmock)
  # Its warnings are not ours.
  target_compile_options(${library} PRIVATE -w)
endforeach()
