# tpv_precompile(NAME [header…])
#
# Parses what most sources read once a build instead of once a source. Layers share one
# such header; who names more, as windows and tests do, gets one of its own. The debug preset
# goes without: it proves that every source includes what it needs.
set(tpv_common_headers <algorithm> <chrono> <cmath> <cstdint> <filesystem> <fstream> <functional> <map> <memory>
                       <optional> <set> <sstream> <stdexcept> <string> <string_view> <thread> <utility> <vector>)

function(tpv_precompile name)
  if(NOT TPV_PRECOMPILED_HEADERS)
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
