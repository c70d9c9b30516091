# Where an installed PLUVO lies. A dialog's links open documents beside the program that shows it, so these programs and
# documents share a folder. bin/ holds the command line, and links to the others.
include(GNUInstallDirs)
if(WIN32)
  set(PLUVO_INSTALL_FOLDER .)
else()
  set(PLUVO_INSTALL_FOLDER ${CMAKE_INSTALL_LIBDIR}/pluvo)
endif()
