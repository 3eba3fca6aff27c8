# tpv_layer(NAME FOLDERS folder… [SEES layer…] [LIBRARIES library…] [PARSES header…] [ALONE])
#
# Declares the layer made of all sources below the given folders. SEES names
# the layers below it; LIBRARIES are outside libraries that stay private to it; PARSES
# names headers of theirs that most of its sources read. ALONE: its sources, forms that
# name their fields alike, are always compiled one by one.
function(tpv_layer name)
  cmake_parse_arguments(LAYER "ALONE" "" "FOLDERS;SEES;LIBRARIES;PARSES" ${ARGN})
  set(sources)
  foreach(folder IN LISTS LAYER_FOLDERS)
    file(GLOB_RECURSE found CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/${folder}/*.cpp
                                              ${CMAKE_CURRENT_SOURCE_DIR}/${folder}/*.h)
    list(APPEND sources ${found})
  endforeach()
  add_library(${name} STATIC ${sources})
  set_target_properties(${name} PROPERTIES LINKER_LANGUAGE CXX)
  tpv_compile_options(${name})
  tpv_precompile(${name} ${LAYER_PARSES})
  if(NOT LAYER_ALONE)
    tpv_compile_together(${name})
  endif()
  target_link_libraries(${name} PUBLIC ${LAYER_SEES} PRIVATE ${LAYER_LIBRARIES})
endfunction()

function(tpv_compile_options name)
  target_compile_options(${name} PRIVATE -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor
                                         -Woverloaded-virtual -Wconversion -Wno-sign-conversion)
  # g++ 12 warns of overlapping copies inside std::string's own operator+.
  target_compile_options(${name} PRIVATE $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>)
  if(TPV_WARNINGS_AS_ERRORS)
    target_compile_options(${name} PRIVATE -Werror)
  endif()
endfunction()
