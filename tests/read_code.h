// Reads a square code back from paper, as a customer's telephone does.
#pragma once

#include <chrono>
#include <string>

#include "adapters/files/program.h"
#include "tests/test_machine.h"

namespace tpv {

// What is read from the PDF's first page at 300 dots an inch; "" for nothing.
inline std::string ReadBack(const TestFolder& folder, const std::string& pdf) {
  const std::string picture = folder / "page";
  constexpr std::chrono::minutes kPatience{2};  // on a machine at work
  RunProgram({"pdftoppm", "-r", "300", "-png", "-singlefile", pdf, picture}, {}, kPatience);
  return RunProgram({"zbarimg", "--nodbus", "-q", "--raw", picture + ".png"}, {}, kPatience).output;
}

}  // namespace tpv
