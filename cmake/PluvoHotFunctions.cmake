# pluvo_put_hot_functions_together(TARGET)
#
# The functions that a run on a small document calls lie together in the program. The system then reads a
# third of the pages that it would else, which shortens such a run by a tenth. A name that no
# longer exists does no harm. scripts/hot_functions.py writes the list.
function(pluvo_put_hot_functions_together TARGET)
  set(list ${CMAKE_SOURCE_DIR}/cmake/hot_functions.txt)
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${list})
  file(STRINGS ${list} names)
  list(TRANSFORM names REPLACE ".+" "*(.text.\\0 .text.startup.\\0)")
  list(JOIN names "\n" sections)
  set(script ${CMAKE_CURRENT_BINARY_DIR}/hot_functions.ld)
  file(CONFIGURE OUTPUT ${script} @ONLY CONTENT "SECTIONS { .text.together : {\n@sections@\n} } INSERT BEFORE .text;\n")
  include(CheckLinkerFlag)
  check_linker_flag(CXX -Wl,-T,${script} PLUVO_HAS_linker_scripts)
  if(PLUVO_HAS_linker_scripts)
    target_link_options(${TARGET} PRIVATE -Wl,-T,${script})
    set_property(TARGET ${TARGET} APPEND PROPERTY LINK_DEPENDS ${script})
  endif()
endfunction()
