# Validates the installed AppStream metadata with appstreamcli, when it is there.
#   cmake -DPREFIX=... -DAPP_ID=... -P AppStreamTest.cmake
find_program(APPSTREAMCLI appstreamcli)
if(NOT APPSTREAMCLI)
  message(STATUS "appstreamcli is not installed: skipped")
  return()
endif()
execute_process(COMMAND ${APPSTREAMCLI} validate --no-net "${PREFIX}/share/metainfo/${APP_ID}.metainfo.xml"
                RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
if(NOT result EQUAL 0)
  message(FATAL_ERROR "appstreamcli validate:\n${output}")
endif()
message(STATUS "${output}")
