// tpv_monkey SEED ACTIONS [headless|qt [STORE]]: exit status 1 when it found
// something. Its script goes to standard output.
#include <iostream>

#include "host/play.h"
#include "host/stage.h"
#include "host/store.h"
#include "tests/test_machine.h"
#include "tests/torture/monkey.h"

namespace tpv::torture {
namespace {

int Run(const std::vector<std::string>& words) {
  if (words.size() < 2) throw UsageError("tpv_monkey SEED ACTIONS [headless|qt [STORE]]");
  const TestFolder folder;
  const bool windows = words.size() > 2 && words[2] == "qt";
  const auto theatre = windows ? WindowTheatre() : HeadlessTheatre();
  const auto stage = theatre->SetUp();
  StepClock clock;
  clock.fixed = DateTime{2026, 11, 24, 10, 30, 0, 0};
  const std::string path = words.size() > 3 ? words[3] : folder / "tienda.db";
  const auto store = OpenStore(path, Contents::Demonstration, clock);
  RecordedTill till(*store, stage->FrontEnd(), clock, 1);
  Monkey monkey(till, stage->Hands(), std::cout, std::stoull(words[0]));
  stage->SetDriver(monkey);
  monkey.Work(std::stol(words[1]));
  for (const std::string& finding : monkey.findings()) std::cerr << finding << "\n";
  return monkey.findings().empty() ? 0 : 1;
}

}  // namespace
}  // namespace tpv::torture

int main(int argc, char** argv) {
  try {
    return tpv::torture::Run({argv + 1, argv + argc});
  } catch (const std::exception& error) {
    std::cerr << "tpv_monkey: " << error.what() << "\n";
    return 2;
  }
}
