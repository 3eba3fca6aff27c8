// A machine of a test's own, with settings and data in a temporary folder.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "adapters/headless/headless_front_end.h"
#include "host/machine.h"
#include "suite/suite_factory.h"
#include "tests/test_machine.h"
#include "tests/test_store.h"

namespace tpv {

class MachineFixture : public ::testing::Test {
 protected:
  TestFolder folder;
  TestVariable data{"XDG_DATA_HOME", folder / "data"};
  TestVariable settings_home{"XDG_CONFIG_HOME", folder / "config"};
  HeadlessFrontEnd front_end;
  Silence silence;
  suite::SuiteFactory objects;
  Machine machine;
  Ports ports = machine.PortsFor(front_end, objects, silence);

  // What the operator was told once all work was done, one a line.
  std::string Told() {
    machine.Finish();
    std::string text;
    for (const Notice& notice : front_end.TakeNotices()) text += notice.text + "\n";
    return text;
  }
};

}  // namespace tpv
