# Libraries that are linked into the programs. Loading one at each start takes longer than work on a small document.
# A fix in one of them reaches users with a new build.

# pluvo_linked_library(NAME): what is linked as NAME is libNAME.a.
function(pluvo_linked_library NAME)
  find_library(PLUVO_${NAME} NAMES lib${NAME}.a REQUIRED)
  add_library(${NAME} STATIC IMPORTED GLOBAL)
  set_target_properties(${NAME} PROPERTIES IMPORTED_LOCATION ${PLUVO_${NAME}})
endfunction()

if(NOT WIN32)
  pluvo_linked_library(deflate)
  pluvo_linked_library(nettle)
  pluvo_linked_library(uchardet)
endif()
