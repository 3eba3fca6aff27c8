// A machine that prints, with no queues but those that a test makes.
#pragma once

#include <cstdlib>
#include <string>
#include <vector>

#include "platform/printer.h"
#include "tests/machine_fixture.h"

namespace tpv {

#ifdef TPV_WITH_PDF
inline constexpr bool kWithPdf = true;
#else
inline constexpr bool kWithPdf = false;
#endif

class Paper : public MachineFixture {
 protected:
  TestVariable programs{"PATH", folder / "bin" + ":" + std::getenv("PATH")};
  // The queues of whoever runs the tests are not the tests'.
  Paper() { folder.Program("lpstat", "echo scheduler is running"); }

  void PrintLines(const std::vector<std::string>& lines, const std::string& title = "Ticket 1") {
    const auto document = machine.printers.Begin(title);
    document->SetFont("Courier New", 9, false);
    for (const std::string& line : lines) {
      document->PrintLine(line + "\r\n");
      document->SetY(document->Y() - 0.3);
    }
    document->End();
  }
  template <typename Action>
  static std::string ErrorOf(Action action) {
    try {
      action();
    } catch (const PrintError& error) {
      return error.what();
    }
    return "";
  }
};

}  // namespace tpv
