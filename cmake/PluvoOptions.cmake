# Compiler settings that hold for every target, and the switches a preset may set.

option(PLUVO_TESTS "Build the tests (needs GoogleTest)" ON)
option(PLUVO_BENCH "Build the benchmarks (needs Google Benchmark)" OFF)
option(PLUVO_FUZZ "Build the fuzz targets (needs clang)" OFF)
if(NOT WIN32)
  find_package(Qt6 QUIET COMPONENTS Widgets)
endif()
option(PLUVO_DESKTOP "Build the desktop program (needs Qt 6)" ${Qt6_FOUND})
if(PLUVO_DESKTOP)
  find_package(Qt6 REQUIRED COMPONENTS Widgets)
endif()
set(PLUVO_SANITIZE "" CACHE STRING "Sanitizers to build with, as -fsanitize takes them")

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)

add_compile_options(-Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror)
# g++ 12 sees overlapping copies in plain assignments of strings once it optimises (fixed in 13).
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  # clang-tidy, which reads these options too, does not know that warning.
  add_compile_options(-Wno-unknown-warning-option -Wno-restrict)
endif()
# Assertions and debug information name files relative to the source tree, so that builds in
# different folders share a compiler cache.
add_compile_options(-ffile-prefix-map=${CMAKE_SOURCE_DIR}/=)

# Programs hold only what they reach.
if(NOT WIN32 AND NOT PLUVO_SANITIZE AND CMAKE_BUILD_TYPE STREQUAL "Release")
  add_compile_options(-ffunction-sections -fdata-sections)
  add_link_options(-Wl,--gc-sections)
endif()

if(PLUVO_SANITIZE)
  add_compile_options(-fsanitize=${PLUVO_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  add_link_options(-fsanitize=${PLUVO_SANITIZE})
endif()

if(PLUVO_FUZZ)
  add_compile_options(-fsanitize=fuzzer-no-link)
endif()

find_program(PLUVO_CCACHE ccache)
if(PLUVO_CCACHE)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CMAKE_COMMAND} -E env CCACHE_BASEDIR=${CMAKE_SOURCE_DIR}
      CCACHE_NOHASHDIR=1 CCACHE_SLOPPINESS=pch_defines,time_macros ${PLUVO_CCACHE})
endif()
