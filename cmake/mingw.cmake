# Windows from here, with Debian's mingw-w64. Included by a toolchain file that has set PLUVO_TRIPLE.
#
# The thread model is POSIX, whose standard library is whole (GoogleTest asks for mutexes). The run-time
# library, winpthreads with it, goes into each program and DLL, so that nothing else need be installed.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_C_COMPILER ${PLUVO_TRIPLE}-gcc-posix)
set(CMAKE_CXX_COMPILER ${PLUVO_TRIPLE}-g++-posix)
set(CMAKE_RC_COMPILER ${PLUVO_TRIPLE}-windres)
set(CMAKE_EXE_LINKER_FLAGS_INIT -static)
set(CMAKE_SHARED_LINKER_FLAGS_INIT -static)
set(CMAKE_MODULE_LINKER_FLAGS_INIT -static)

set(CMAKE_FIND_ROOT_PATH /usr/${PLUVO_TRIPLE})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# What tests run in, where it is installed.
find_program(PLUVO_WINE wine)
if(PLUVO_WINE)
  set(CMAKE_CROSSCOMPILING_EMULATOR ${PLUVO_WINE})
endif()
