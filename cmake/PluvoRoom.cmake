# pluvo_room(NAME [FOLDERS folder…] [DEPENDS room…] [LIBRARIES target…] [PRIVATE_LIBRARIES target…])
#
# One room of the house: the folder it is called in becomes the library pluvo_NAME. Its public headers lie in
# include/NAME/. It can include only the rooms named in DEPENDS, not those they depend on, so an include across a wall
# fails to build. Its sources lie in it and in FOLDERS, if it has parts.
function(pluvo_room NAME)
  cmake_parse_arguments(ROOM "" "" "FOLDERS;DEPENDS;LIBRARIES;PRIVATE_LIBRARIES" ${ARGN})
  list(TRANSFORM ROOM_FOLDERS REPLACE "(.+)" "${CMAKE_CURRENT_SOURCE_DIR}/\\1/*.cpp" OUTPUT_VARIABLE parts)
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp ${parts})
  list(TRANSFORM ROOM_DEPENDS PREPEND pluvo_ OUTPUT_VARIABLE rooms)
  set_property(GLOBAL APPEND PROPERTY PLUVO_ROOMS ${CMAKE_CURRENT_SOURCE_DIR}/include)
  if(sources)
    add_library(pluvo_${NAME} STATIC ${sources})
    target_include_directories(pluvo_${NAME} PUBLIC include PRIVATE .)
    # A target that links a room also links the rooms below it, without seeing them.
    target_link_libraries(pluvo_${NAME} PUBLIC ${ROOM_LIBRARIES} PRIVATE ${rooms} ${ROOM_PRIVATE_LIBRARIES})
    set_property(TARGET pluvo_${NAME} PROPERTY PLUVO_SEES ${rooms})
  else()
    add_library(pluvo_${NAME} INTERFACE)
    target_include_directories(pluvo_${NAME} INTERFACE include)
    list(TRANSFORM rooms REPLACE "(.+)" "$<LINK_ONLY:\\1>")
    target_link_libraries(pluvo_${NAME} INTERFACE ${rooms} ${ROOM_LIBRARIES})
  endif()
endfunction()

# pluvo_program_of(TARGET ROOM): the program of a room is part of it, and sees what it sees.
function(pluvo_program_of TARGET ROOM)
  get_target_property(rooms pluvo_${ROOM} PLUVO_SEES)
  target_link_libraries(${TARGET} PRIVATE pluvo_${ROOM} ${rooms})
  target_include_directories(${TARGET} PRIVATE .)
endfunction()

# pluvo_sees_every_room(TARGET)
#
# For tests, benchmarks and fuzz targets, which no room includes.
function(pluvo_sees_every_room TARGET)
  get_property(includes GLOBAL PROPERTY PLUVO_ROOMS)
  target_include_directories(${TARGET} PRIVATE ${includes})
endfunction()

# pluvo_tests(NAME [DEPENDS room…] [LIBRARIES target…] [HEADERS header…])
#
# The tests of one room: the folder it is called in becomes the program NAME_tests. A test may include the private
# headers of the room it tests. With HEADERS these are precompiled for it alone, in the place of the headers that all
# tests share. A room compiled in another way needs that.
function(pluvo_tests NAME)
  cmake_parse_arguments(ROOM "" "" "DEPENDS;LIBRARIES;HEADERS" ${ARGN})
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp)
  list(TRANSFORM ROOM_DEPENDS PREPEND pluvo_ OUTPUT_VARIABLE rooms)
  add_executable(${NAME}_tests ${sources})
  target_link_libraries(${NAME}_tests PRIVATE ${rooms} ${ROOM_LIBRARIES} GTest::gmock GTest::gtest_main)
  pluvo_sees_every_room(${NAME}_tests)
  cmake_path(RELATIVE_PATH CMAKE_CURRENT_SOURCE_DIR BASE_DIRECTORY ${CMAKE_SOURCE_DIR}/tests OUTPUT_VARIABLE room)
  target_include_directories(${NAME}_tests PRIVATE ${CMAKE_SOURCE_DIR}/tests ${CMAKE_SOURCE_DIR}/src/${room})
  if(ROOM_HEADERS)
    target_precompile_headers(${NAME}_tests PRIVATE ${ROOM_HEADERS})
  else()
    target_precompile_headers(${NAME}_tests REUSE_FROM pluvo_test_pch)
  endif()
  if(CMAKE_CROSSCOMPILING)
    # One test for each program: to start one in the emulator costs more than most tests do.
    add_test(NAME ${NAME}_tests COMMAND ${NAME}_tests --gtest_brief=1)
    set_tests_properties(${NAME}_tests PROPERTIES TIMEOUT 300)
  else()
    gtest_discover_tests(${NAME}_tests DISCOVERY_TIMEOUT 60 PROPERTIES TIMEOUT 600)
  endif()
endfunction()

# pluvo_script(NAME SCRIPT [COMPONENT STEPS])
#
# A script over the stand-in for Word, under Wine; see run_script.cmd. One that fails there says nothing and
# exits with 0, so that it must say when all was well.
function(pluvo_script NAME)
  string(REPLACE "/" "\\" arguments "${ARGN}")
  string(REPLACE "/" "\\" here "Z:${CMAKE_SOURCE_DIR}/tests/word_stand_in")
  string(REPLACE "/" "\\" programs "Z:${CMAKE_BINARY_DIR}/bin")
  add_test(NAME ${NAME} COMMAND ${PLUVO_WINE} cmd /c "${here}\\run_script.cmd" "${programs}" ${arguments})
  set_tests_properties(${NAME} PROPERTIES PASS_REGULAR_EXPRESSION "all as wanted"
    FAIL_REGULAR_EXPRESSION "FAILED" RUN_SERIAL TRUE TIMEOUT 180)
endfunction()
