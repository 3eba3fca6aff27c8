// Any text as a scenario: commands, or a ScriptError that says where it is wrong.
#include <sstream>

#include "adapters/headless/scenario/script.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  if (text.find("include") != std::string::npos) return 0;  // reads no files
  try {
    std::istringstream lines(text);
    for (const auto& command : tpv::scenario::ReadScript(lines, "fuzz")) {
      for (std::size_t i = 0; i < command.Count(); ++i) {
        (void)command.Rest(i);
        (void)command.TextFrom(i);
      }
    }
  } catch (const tpv::scenario::ScriptError&) {
  }
  return 0;
}
