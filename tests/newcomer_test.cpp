// The newcomer's story on a machine of his own: real settings, printers, store and copies in
// a home folder that was empty.
#include <gtest/gtest.h>

#include <sstream>

#include "adapters/files/paper_delivery.h"
#include "adapters/files/setting_names.h"
#include "adapters/headless/scenario/headless_operator.h"
#include "adapters/headless/scenario/player.h"
#include "host/backup.h"
#include "host/chosen_store.h"
#include "host/machine.h"
#include "host/recorded_till.h"
#include "host/store_check.h"
#include "tests/test_machine.h"
#include "tests/test_store.h"

namespace tpv {
namespace {

TEST(Newcomer, HoldsTheTicketOfAnImportedArticleOnTheFirstDay) {
  const TestFolder home;
  const TestVariable where("HOME", home.path()), data("XDG_DATA_HOME", home / ".local/share"),
      config("XDG_CONFIG_HOME", home / ".config");
  std::ostringstream transcript;
  HeadlessFrontEnd front_end;
  TestStore none;  // of the script's own till, which sells nothing
  StepClock clock;
  RecordedTill script(none.connection(), front_end, clock, 1);
  {
    Machine machine;
    machine.settings.Write(kTpv, kPaper, kDefaultPrinter, kFolderPrinter);  // whatever printers this machine has
    script.rig.premises.write_file = [&](const std::string& name, const std::string& text) {
      std::ofstream(home / name) << text;
    };
    script.rig.premises.start_program = [&] {
      StartScreen screen(machine.ProgramFor(front_end, script.objects, script.sound));
      front_end.ShowModal(screen);
    };
    scenario::HeadlessOperator hands(front_end);
    scenario::Player player(script.rig, hands, transcript);
    front_end.SetDriver(player);
    EXPECT_TRUE(player.Play(scenario::ReadScript(TPV_SCENARIO_FOLDER "/common/newcomer.tpv"))) << transcript.str();
  }
  std::string paper;
  for (const std::string& file : home.Files(".txt")) paper += ReadFile(file).value();
  for (const char* line : {"Frutería La Huerta", "Aceite \"virgen\" 1 l         7,95", "Tomate de rama, kg          1,99",
                           "            Total......     9,94", " Saldo Final...........    59,94"}) {
    EXPECT_NE(paper.find(line), std::string::npos) << line << " in\n" << paper;
  }
  EXPECT_EQ(home.Files(".pdf").size(), 2u);
  FileSettings settings(ConfigFolder() + "/tpv.conf");
  const std::string store = Shops(settings).Chosen();
  EXPECT_EQ(store, home / ".local/share/tpv/tiendas/fruteria-la-huerta.db");
  EXPECT_TRUE(LastBackup(PlannedBackup(settings, store)).has_value());
  EXPECT_EQ(home.Files(".db.gz").size(), 1u);
  EXPECT_EQ(FindingsText(CheckStore(*OpenChosenStore(store, clock))), "");
}

}  // namespace
}  // namespace tpv
