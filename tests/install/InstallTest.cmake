# Installs the build into a fresh prefix and checks what lands where.
#   cmake -DBUILD_DIR=... -DPREFIX=... -DAPP_ID=... -P InstallTest.cmake
file(REMOVE_RECURSE "${PREFIX}")
execute_process(COMMAND ${CMAKE_COMMAND} --install "${BUILD_DIR}" --prefix "${PREFIX}"
                RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
if(NOT result EQUAL 0)
  message(FATAL_ERROR "cmake --install failed:\n${output}")
endif()

set(expected
  bin/vantorel
  bin/vantorel-cli
  share/vantorel/intro.rtf
  share/vantorel/readme.html
  share/applications/${APP_ID}.desktop
  share/icons/hicolor/scalable/apps/${APP_ID}.svg
  share/metainfo/${APP_ID}.metainfo.xml
  share/man/man1/vantorel.1.gz
  share/man/man1/vantorel-cli.1.gz
  share/bash-completion/completions/vantorel-cli)
foreach(file ${expected})
  if(NOT EXISTS "${PREFIX}/${file}")
    message(FATAL_ERROR "not installed: ${file}")
  endif()
endforeach()
foreach(program vantorel vantorel-cli)
  file(READ "${PREFIX}/bin/${program}" head LIMIT 4 HEX)
  if(NOT head STREQUAL "7f454c46")
    message(FATAL_ERROR "bin/${program} is not a program")
  endif()
endforeach()

# The menu entry opens a folder, with the installed icon.
file(READ "${PREFIX}/share/applications/${APP_ID}.desktop" desktop)
if(NOT desktop MATCHES "\nExec=vantorel %f\n" OR NOT desktop MATCHES "\nIcon=${APP_ID}\n")
  message(FATAL_ERROR "the desktop file's Exec or Icon is wrong:\n${desktop}")
endif()
find_program(DESKTOP_FILE_VALIDATE desktop-file-validate)
if(DESKTOP_FILE_VALIDATE)
  execute_process(COMMAND ${DESKTOP_FILE_VALIDATE} "${PREFIX}/share/applications/${APP_ID}.desktop"
                  RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
  if(NOT result EQUAL 0 OR output MATCHES "error")
    message(FATAL_ERROR "desktop-file-validate:\n${output}")
  endif()
endif()

# The installed command line runs from its new place and reads the installed files.
execute_process(COMMAND "${PREFIX}/bin/vantorel-cli" -d "${PREFIX}/share/vantorel" -f readme.html find Vantorel
                RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
if(NOT result EQUAL 0 OR NOT output MATCHES "1 files processed")
  message(FATAL_ERROR "the installed vantorel-cli did not run:\n${output}")
endif()
message(STATUS "installed into ${PREFIX}")
