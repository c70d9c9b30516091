# The Debian packages pluvo and pluvo-desktop, which packaging/debian.sh makes with CPack in the preset "package". What
# they depend on is found by dpkg-shlibdeps in the programs.
set(PLUVO_MAINTAINER "PLUVO maintainers <maintainers@pluvo.example>" CACHE STRING
  "Who answers for the packages: name and address")
set(PLUVO_DEBIAN_REVISION 1 CACHE STRING "Debian's part of the packages' version")

# Texts of packaging/debian, with the names and versions of this build, packed as Debian has them.
string(TIMESTAMP PLUVO_CHANGED "%a, %d %b %Y %H:%M:%S +0000" UTC)
set(texts ${CMAKE_BINARY_DIR}/debian)
configure_file(packaging/debian/changelog.in ${texts}/changelog.Debian @ONLY)
configure_file(packaging/debian/copyright.in ${texts}/copyright @ONLY)
configure_file(CHANGELOG.md ${texts}/changelog COPYONLY)
set(packed)
foreach(text changelog changelog.Debian)
  execute_process(COMMAND gzip -9nc ${texts}/${text} OUTPUT_FILE ${texts}/${text}.gz COMMAND_ERROR_IS_FATAL ANY)
  list(APPEND packed ${texts}/${text}.gz)
endforeach()

set(components pluvo)
if(TARGET pluvo-desktop)
  list(APPEND components pluvo-desktop)
endif()
foreach(component ${components})
  install(FILES ${packed} ${texts}/copyright DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${component} COMPONENT ${component})
  install(FILES ${texts}/${component}.spdx.json DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${component}
    COMPONENT ${component} OPTIONAL)
  install(FILES packaging/debian/${component}.lintian-overrides DESTINATION ${CMAKE_INSTALL_DATADIR}/lintian/overrides
    RENAME ${component} COMPONENT ${component})
endforeach()
file(GLOB examples CONFIGURE_DEPENDS samples/*.docx samples/*.txt samples/*.toml)
install(FILES ${examples} DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/pluvo/examples COMPONENT pluvo)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME pluvo)
set(CPACK_PACKAGE_VENDOR "PLUVO maintainers")
set(CPACK_PACKAGE_CONTACT "${PLUVO_MAINTAINER}")
set(CPACK_PACKAGE_HOMEPAGE_URL http://www.pluvo.example/)
set(CPACK_COMPONENTS_ALL ${components})
set(CPACK_COMPONENTS_GROUPING IGNORE)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE
  WORLD_READ WORLD_EXECUTE)

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE ${PLUVO_DEBIAN_REVISION})
set(CPACK_DEBIAN_PACKAGE_SECTION text)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)

set(CPACK_DEBIAN_PLUVO_PACKAGE_NAME pluvo)
# Loaded when a large part is to be deflated; without it that takes longer.
set(CPACK_DEBIAN_PLUVO_PACKAGE_RECOMMENDS libisal2)
set(CPACK_DEBIAN_PLUVO_PACKAGE_SUGGESTS pluvo-desktop)
set(CPACK_DEBIAN_PLUVO_DESCRIPTION "find and change blocks of text in documents
PLUVO finds blocks of text in Word documents (.docx, .doc and their kin),
Rich Text, web pages and plain texts. A block begins with one text, may end
with another no farther away than you allow, and may have to contain a third.
PLUVO lists blocks, or inserts, replaces, deletes or highlights on them, in
one document or in whole folders.
.
Text outside the changes keeps every byte. A document is saved completely or
not at all, and a run can be taken back.
.
This package is the command line.")
set(CPACK_DEBIAN_PLUVO-DESKTOP_PACKAGE_NAME pluvo-desktop)
set(CPACK_DEBIAN_PLUVO-DESKTOP_PACKAGE_SECTION editors)
# Qt finds what draws the icon, and what shows windows under Wayland, when it runs: no program is linked with them.
set(CPACK_DEBIAN_PLUVO-DESKTOP_PACKAGE_RECOMMENDS "libisal2, libqt6svg6, qt6-wayland")
set(CPACK_DEBIAN_PLUVO-DESKTOP_PACKAGE_SUGGESTS pluvo)
set(CPACK_DEBIAN_PLUVO-DESKTOP_DESCRIPTION "find and change blocks of text in documents, in windows
PLUVO finds blocks of text in Word documents (.docx, .doc and their kin),
Rich Text, web pages and plain texts. A block begins with one text, may end
with another no farther away than you allow, and may have to contain a third.
PLUVO inserts, replaces, deletes or highlights on them.
.
This package opens documents in tabs, with a dialog beside them. Each block
can be shown and confirmed before anything happens to it. All files of a
folder can be worked on, too.")
include(CPack)
