# What makes a build from nothing quick. The debug preset goes without: it proves that every
# source compiles alone and includes what it needs.

# tpv_precompile(NAME [header…])
#
# Parses what most sources read once a build instead of once a source. Layers share one
# such header; who names more, as windows and tests do, gets one of its own.
set(tpv_common_headers <algorithm> <chrono> <cmath> <cstdint> <filesystem> <fstream> <functional> <map> <memory>
                       <optional> <set> <sstream> <stdexcept> <string> <string_view> <thread> <utility> <vector>)

function(tpv_precompile name)
  if(NOT TPV_QUICK_BUILD)
    return()
  endif()
  # g++ 12 warns of what is inside its own headers when they come precompiled.
  target_compile_options(${name} PRIVATE
    "$<$<CXX_COMPILER_ID:GNU>:-Wno-array-bounds;-Wno-stringop-overflow;-Wno-stringop-overread>")
  if(ARGN OR name STREQUAL tpv_base)
    target_precompile_headers(${name} PRIVATE ${tpv_common_headers} ${ARGN})
  else()
    target_precompile_headers(${name} REUSE_FROM tpv_base)
  endif()
endfunction()

# tpv_compile_together(NAME)
#
# Compiles some of its sources at a time. What a source names for itself is then
# unlike what any other source of the same target names.
function(tpv_compile_together name)
  set_target_properties(${name} PROPERTIES UNITY_BUILD ${TPV_QUICK_BUILD} UNITY_BUILD_BATCH_SIZE 8)
endfunction()
