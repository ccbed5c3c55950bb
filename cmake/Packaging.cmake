# The Debian package (make package, or cpack in the build folder): the
# programs with their manual pages, shell completions, menu entry, icon,
# software-centre description, copyright file and changelog, under /usr.

set(VANTOREL_METAINFO ${PROJECT_SOURCE_DIR}/data/desktop/${VANTOREL_APP_ID}.metainfo.xml)
set(VANTOREL_MAINTAINER "Brimlark <vantorel@brimlark.example>" CACHE STRING "The package's maintainer")
set(VANTOREL_DOC_DIR ${CMAKE_INSTALL_DATADIR}/doc/vantorel)

# The Debian changelog, made from the releases listed in the software-centre
# description, whose newest must be this version.
function(vantorel_debian_changelog output)
  file(READ ${VANTOREL_METAINFO} xml)
  string(REGEX REPLACE ".*<releases>(.*)</releases>.*" "\\1" releases "${xml}")
  string(REPLACE ";" "," releases "${releases}")
  string(REPLACE "</release>" ";" releases "${releases}")
  set(text "")
  foreach(release IN LISTS releases)
    if(NOT release MATCHES "<release version=\"([^\"]+)\" date=\"([0-9-]+)\"")
      continue()
    endif()
    set(version ${CMAKE_MATCH_1})
    set(date ${CMAKE_MATCH_2})
    if(text STREQUAL "" AND NOT version STREQUAL PROJECT_VERSION)
      message(FATAL_ERROR "The newest release in ${VANTOREL_METAINFO} is ${version}, "
                          "but the project's version is ${PROJECT_VERSION}: add a <release> for it.")
    endif()
    execute_process(COMMAND date -R -u -d "${date} 12:00" OUTPUT_VARIABLE stamp
                    OUTPUT_STRIP_TRAILING_WHITESPACE RESULT_VARIABLE failed)
    if(failed)
      message(FATAL_ERROR "The release ${version} in ${VANTOREL_METAINFO} has a bad date: ${date}")
    endif()
    string(APPEND text "vantorel (${version}) unstable; urgency=medium\n\n")
    string(REGEX MATCHALL "<(p|li)>[^<]*</" notes "${release}")
    foreach(note IN LISTS notes)
      string(REGEX REPLACE "^<(p|li)>|</$" "" note "${note}")
      string(REGEX REPLACE "[ \t\r\n]+" " " note "${note}")
      string(STRIP "${note}" note)
      string(APPEND text "  * ${note}\n")
    endforeach()
    string(APPEND text "\n -- ${VANTOREL_MAINTAINER}  ${stamp}\n\n")
  endforeach()
  if(text STREQUAL "")
    message(FATAL_ERROR "${VANTOREL_METAINFO} lists no release")
  endif()
  string(STRIP "${text}" text)
  file(WRITE ${output} "${text}\n")
endfunction()

set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${VANTOREL_METAINFO})
vantorel_debian_changelog(${PROJECT_BINARY_DIR}/debian/changelog)
find_program(GZIP_PROGRAM gzip REQUIRED)
add_custom_command(OUTPUT ${PROJECT_BINARY_DIR}/debian/changelog.gz
  COMMAND ${GZIP_PROGRAM} -9nfk ${PROJECT_BINARY_DIR}/debian/changelog
  DEPENDS ${PROJECT_BINARY_DIR}/debian/changelog VERBATIM)
add_custom_target(debian_changelog ALL DEPENDS ${PROJECT_BINARY_DIR}/debian/changelog.gz)
install(FILES data/debian/copyright ${PROJECT_BINARY_DIR}/debian/changelog.gz DESTINATION ${VANTOREL_DOC_DIR})

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME vantorel)
set(CPACK_PACKAGE_VENDOR Brimlark)
set(CPACK_PACKAGE_CONTACT "${VANTOREL_MAINTAINER}")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_HOMEPAGE https://www.brimlark.example/vantorel/)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
# The libraries the programs link come from dpkg-shlibdeps; the window's Qt
# platform plugins are loaded at run time, so they are named here.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
if(TARGET vantorel)
  set(CPACK_DEBIAN_PACKAGE_DEPENDS "qt6-qpa-plugins")
  set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "xdg-utils")
  set(CPACK_DEBIAN_PACKAGE_SUGGESTS "qt6-wayland")
endif()
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION "find, replace and extract text across many files
Vantorel searches every file under a folder whose name matches a filter,
such as *.htm*;*.css, for a text or a regular expression. It lists each file
that holds matches with its match count, size and date, and shows the
matches in their surrounding text. It replaces in place after one
confirmation, optionally keeping .bak copies, and every Replace can be taken
back; it extracts the text of every match.

Files are searched in parallel and are never left half-written. The package
holds the window (vantorel) and the command line (vantorel-cli), with a
library of named expressions and batch jobs shared by both.")
include(CPack)
