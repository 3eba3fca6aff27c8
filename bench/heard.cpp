#include "bench/heard.h"

#include <filesystem>
#include <sstream>

#include "adapters/files/temporary_folder.h"
#include "adapters/headless/scenario/player.h"
#include "adapters/sqlite/dialect/scanner.h"
#include "host/recorded_till.h"
#include "host/stage.h"
#include "host/store.h"

namespace tpv::bench {

namespace {

std::vector<std::string> Play(const std::filesystem::path& file) {
  StepClock clock;
  clock.fixed = DateTime{2026, 11, 24, 10, 30};
  const TemporaryFolder folder;
  const bool empty = file.stem().string().starts_with("empty_");
  const auto store =
      OpenStore(folder / "tienda.db", empty ? Contents::Empty : Contents::Demonstration, clock);
  const auto stage = HeadlessTheatre()->SetUp();
  RecordedTill till(*store, stage->FrontEnd(), clock, 1);
  std::ostringstream transcript;
  scenario::Player player(till.rig, stage->Hands(), transcript);
  stage->SetDriver(player);
  player.Play(scenario::ReadScript(file.string()));
  return std::move(till.connection.sent);
}

}  // namespace

std::map<std::string, Heard> HearScenarios(const std::string& folder) {
  std::map<std::string, Heard> all;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    if (entry.path().extension() != ".tpv") continue;
    for (std::string& statement : Play(entry.path())) {
      Heard& heard = all[dialect::Scan(statement).shape];
      if (heard.times++ == 0) heard.text = std::move(statement);
    }
  }
  return all;
}

}  // namespace tpv::bench
