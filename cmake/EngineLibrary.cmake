# One folder of src/ as one static library, vantorel_<folder>.
#
#   vantorel_layer(<folder> [PUBLIC <dependency>...] [PRIVATE <dependency>...])
#
# A dependency is another folder (core, files, ...) or any other target.
# PUBLIC when the folder's headers include the dependency's, PRIVATE when
# only its sources do. The library's include root holds its own folder and
# nothing else (a link to src/<folder>), so "search/X.h" is found only by
# a target that links vantorel_search: an include that runs up or sideways
# does not compile. Each folder's declared folders are also kept for the
# layers test (tests/layers/CheckLayers.cmake), which reads every header
# of every folder, also those that no source of the folder includes.
function(vantorel_layer folder)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "PUBLIC;PRIVATE")
  set(target vantorel_${folder})
  file(GLOB sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/src/${folder}/*.cpp
       ${PROJECT_SOURCE_DIR}/src/${folder}/*/*.cpp)
  if(folder STREQUAL "ui")
    # Its headers too, for moc; the window's entry point is the program's own.
    file(GLOB headers CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/src/ui/*.h ${PROJECT_SOURCE_DIR}/src/ui/*/*.h)
    list(APPEND sources ${headers})
    list(REMOVE_ITEM sources ${PROJECT_SOURCE_DIR}/src/ui/main.cpp)
  elseif(folder STREQUAL "cli")
    # The command line's parts, without its entry point, for its tests too.
    list(REMOVE_ITEM sources ${PROJECT_SOURCE_DIR}/src/cli/main.cpp)
  endif()
  add_library(${target} STATIC ${sources})
  set(root ${PROJECT_BINARY_DIR}/include/${folder})
  file(MAKE_DIRECTORY ${root})
  file(CREATE_LINK ${PROJECT_SOURCE_DIR}/src/${folder} ${root}/${folder} SYMBOLIC)
  target_include_directories(${target} PUBLIC ${root})
  set(folders "")
  foreach(scope PUBLIC PRIVATE)
    set(targets "")
    foreach(dependency IN LISTS arg_${scope})
      if(EXISTS ${PROJECT_SOURCE_DIR}/src/${dependency})
        list(APPEND targets vantorel_${dependency})
        list(APPEND folders ${dependency})
      else()
        list(APPEND targets ${dependency})
      endif()
    endforeach()
    target_link_libraries(${target} ${scope} ${targets})
  endforeach()
  # -Wno-restrict: GCC 12 reports false positives inside std::string (its bug 105329).
  target_compile_options(${target} PRIVATE -Wall -Wextra -Wno-restrict)
  list(JOIN folders "," folders)
  set_property(GLOBAL APPEND PROPERTY VANTOREL_LAYERS "${folder}=${folders}")
endfunction()
