# What --version tells of a build: for which system, by which compiler, with which libraries.

# pluvo_version_in(OUTPUT HEADER PATTERN...): the numbers that the patterns find in a header, with full stops between.
function(pluvo_version_in OUTPUT HEADER)
  find_file(found ${HEADER} PATH_SUFFIXES include REQUIRED NO_CACHE)
  file(READ ${found} text)
  set(numbers)
  foreach(pattern ${ARGN})
    if(text MATCHES "${pattern}")
      list(APPEND numbers ${CMAKE_MATCH_1})
    endif()
  endforeach()
  list(JOIN numbers . version)
  set(${OUTPUT} "${version}" PARENT_SCOPE)
endfunction()

# pluvo_built_with(SOURCE [LIBRARY...]): defines PLUVO_BUILT_WITH in the source, a line that names what all programs are
# built with and these libraries.
function(pluvo_built_with SOURCE)
  pluvo_version_in(deflate libdeflate.h "VERSION_STRING[ \t]+\"([0-9.]+)\"")
  pluvo_version_in(nettle nettle/version.h "VERSION_MAJOR ([0-9]+)" "VERSION_MINOR ([0-9]+)")
  # uchardet's headers do not tell.
  find_file(described uchardet.pc PATHS /usr/lib /usr/share PATH_SUFFIXES ${CMAKE_LIBRARY_ARCHITECTURE}/pkgconfig pkgconfig
    NO_CACHE)
  set(uchardet uchardet)
  if(described)
    file(STRINGS ${described} version REGEX "^Version:")
    string(REGEX REPLACE "^Version: *" "uchardet " uchardet "${version}")
  endif()
  list(JOIN ARGN ", " more)
  if(more)
    string(PREPEND more ", ")
  endif()
  set(how ${CMAKE_BUILD_TYPE})
  if(PLUVO_SANITIZE)
    string(APPEND how " under sanitizers (${PLUVO_SANITIZE})")
  endif()
  set(line "Built for ${CMAKE_SYSTEM_NAME} on ${CMAKE_SYSTEM_PROCESSOR} by ${CMAKE_CXX_COMPILER_ID} \
${CMAKE_CXX_COMPILER_VERSION} as ${how}, with libdeflate ${deflate}, nettle ${nettle}, ${uchardet}${more}.")
  set_property(SOURCE ${SOURCE} APPEND PROPERTY COMPILE_DEFINITIONS "PLUVO_BUILT_WITH=\"${line}\"")
endfunction()
