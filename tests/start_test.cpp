// The program's first window: it makes the shop, hands the component its context
// and remembers the choices.
#include "host/start_screen.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <deque>
#include <fstream>

#include "adapters/headless/headless_front_end.h"
#include "host/demo/demonstration.h"
#include "host/machine.h"
#include "host/store.h"
#include "tests/as_nobody.h"
#include "tests/test_store.h"

namespace tpv {
namespace {

class StartTest : public testing::Test, private ui::Driver {
 protected:
  StartTest() { setenv("XDG_DATA_HOME", std::filesystem::path(store.path()).parent_path().c_str(), 1); }
  ~StartTest() override { unsetenv("XDG_DATA_HOME"); }

  void Play(std::deque<std::function<void()>> todo) {
    steps = std::move(todo);
    Machine machine(store.path() + ".conf");
    Silence silence;
    suite::SuiteFactory objects;
    StartScreen screen(machine.ProgramFor(front_end, objects, silence));
    front_end.SetDriver(*this);
    front_end.ShowModal(screen);
  }
  ui::Form& Top() { return *front_end.engine().Top(); }
  void Click(const char* button) { front_end.engine().Click(*Top().Find(button)); }
  std::string Text(const char* field) { return dynamic_cast<ui::TextBox&>(*Top().Find(field)).text; }
  void Enter(const char* field, const char* text) {
    front_end.engine().FocusOn(*Top().Find(field));
    front_end.engine().ClearText();
    for (const char* c = text; *c != '\0'; ++c) front_end.engine().TypeCharacter(*c);
    front_end.engine().PressKey(ui::Key::Tab);
  }

  // A shop that was opened before.
  void Choose(const std::string& chosen) {
    FileSettings settings(store.path() + ".conf");
    Shops(settings).Choose({chosen, ""});
  }
  std::string Make(const std::string& name, Contents contents) {
    std::string path = store.path() + name;
    MakeStore(path, contents, store.clock());
    return path;
  }

  // Remembers what was looked up.
  struct Reader : HeadlessFrontEnd {
    void ShowManual(std::string_view page) override { pages.emplace_back(page); }
    std::vector<std::string> pages;
  };

  TestStore store;
  Reader front_end;
  std::deque<std::function<void()>> steps;
  std::vector<std::string> told;

 private:
  bool Step() override {
    if (steps.empty()) return false;
    const auto step = std::move(steps.front());
    steps.pop_front();
    step();
    return true;
  }
  void OnBox(const ui::MessageBox& box) override { told.push_back(box.text); }
};


TEST_F(StartTest, TheDemonstrationIsMadeWhenItIsAskedForAndTheChoicesAreRemembered) {
  Play({[&] {
          EXPECT_EQ(Top().name, "frmBienvenida");
          EXPECT_FALSE(std::filesystem::exists(DemonstrationStore()));
          Click("cmdDemostracion");
        },
        [&] {
          EXPECT_TRUE(std::filesystem::exists(DemonstrationStore()));
          EXPECT_EQ(Text("Text1(1)"), "1");
          Enter("Text1(1)", "40000");
          Click("cmdVenta");
        },
        [&] { front_end.AnswerBox(ui::Answer::Ok); },
        [&] {
          EXPECT_EQ(Top().focus, Top().Find("Text1(1)"));
          Enter("Text1(1)", "2");
          auto& agents = dynamic_cast<ui::ComboBox&>(*Top().Find("cboVendedor"));
          front_end.engine().SelectRow(agents, 1);
          Click("cmdVenta");
        },
        [&] {
          EXPECT_EQ(Top().name, "frmTpv");
          EXPECT_TRUE(Top().Title().starts_with("DEMOSTRACIÓN · "));
          EXPECT_EQ(Top().Band().at(0).text, "DEMOSTRACIÓN");
          EXPECT_EQ(Text("Text1(6)"), "2");  // whatever the store's parameter says
          EXPECT_NE(Text("Text1(1)"), "");   // the seller chosen
          front_end.engine().CloseBox();
        },
        [&] { EXPECT_EQ(Top().name, "frmInicio"); }});
  EXPECT_EQ(told, std::vector<std::string>{"El número de caja no es válido"});
  Play({[&] {
    EXPECT_EQ(Text("Text1(1)"), "2");
    EXPECT_EQ(dynamic_cast<ui::ComboBox&>(*Top().Find("cboVendedor")).index, 1);
  }});
}

// Whatever is wrong with the shop's store: the till stays closed, nothing else is opened or
// made in its place, and it is still the one to be opened.
TEST_F(StartTest, AShopThatCannotBeOpenedStaysTheOne) {
  const std::string path = store.path() + ".tienda";
  const auto make = [&] { Make(".tienda", Contents::Empty); };
  struct Case {
    const char* reason;
    std::function<void()> spoil;
    std::string chosen;
    bool as_nobody = false;
  };
  const Case cases[] = {
      {"No existe el almacén", [] {}, path},
      {"no es un almacén válido o está dañado", [&] { std::ofstream(path) << std::string(9000, 'x'); }, path},
      {"versión más nueva", [&] { make();
         // Where every file of the engine has it.
         std::fstream(path, std::ios::in | std::ios::out | std::ios::binary).seekp(60).write("\0\0\0c", 4); }, path},
      {"es de solo lectura", [&] { make(); ::chmod(path.c_str(), 0444); }, path, true},
      {"", {}, "odbc:Driver=/no/hay.so;Server=nadie"},
  };
  for (const Case& wrong : cases) {
    std::filesystem::remove(path);
    if (wrong.spoil) wrong.spoil();
    Choose(wrong.chosen);
    const auto folder = std::filesystem::path(store.path()).parent_path();
    ::chmod(folder.c_str(), 0777);
    ::chmod((store.path() + ".conf").c_str(), 0666);
    const auto nobody = wrong.as_nobody ? std::make_unique<AsNobody>() : nullptr;
    Play({[&] {
            EXPECT_EQ(Top().name, "frmTiendaCerrada") << wrong.reason;
            const std::string reason = Top().Find("lblMotivo")->caption;
            EXPECT_NE(reason, "");
            EXPECT_NE(reason.find(wrong.reason), std::string::npos) << reason;
            Click("cmdReintentar");
          },
          [&] {
            EXPECT_EQ(Top().name, "frmTiendaCerrada") << wrong.reason;
            Click("cmdSalir");
          },
          [&] {
            EXPECT_EQ(Top().name, "frmInicio");
            EXPECT_FALSE(Top().Find("cmdVenta")->enabled);
            EXPECT_EQ(Top().Band().at(0).text, "cerrada");
            Click("cmdTienda");
          },
          [&] { Click("cmdOtra"); },
          [&] {
            EXPECT_EQ(Top().name, "frmBienvenida");
            front_end.engine().CloseBox();
          },
          [&] { EXPECT_EQ(Top().name, "frmTiendaCerrada"); }});
    EXPECT_FALSE(std::filesystem::exists(DemonstrationStore()));
    FileSettings settings(store.path() + ".conf");
    EXPECT_EQ(Shops(settings).Chosen(), wrong.chosen);
  }
  EXPECT_TRUE(told.empty());
}

TEST_F(StartTest, ADamagedShopIsTakenBackFromACopyAndAnotherOneIsChosenByName) {
  const std::string first = Make(".una.db", Contents::Empty), path = Make(".otra.db", Contents::Empty);
  SqliteConnection(path, store.clock()).Execute("UPDATE Parametros SET Par_Nombre = 'LA OTRA', Par_NumCaja = 7");
  BackupStore(PlannedBackup(FileSettings(store.path() + ".conf"), path), store.clock());
  std::ofstream(path, std::ios::trunc) << "x";
  Choose(first);
  Choose(path);
  const auto other = [&](int row) {
    return [this, row] {
      auto& shops = dynamic_cast<ui::ComboBox&>(*Top().Find("cboTienda"));
      front_end.engine().SelectRow(shops, row);
      Click("cmdAbrir");
    };
  };
  const auto answer = [&](ui::Answer given) { return [this, given] { front_end.AnswerBox(given); }; };
  Play({[&] { Click("cmdCopia"); }, [&] { front_end.CloseSearch(0); }, answer(ui::Answer::Yes),
        answer(ui::Answer::Ok),
        [&] {
          EXPECT_EQ(Text("Text1(0)").substr(0, 7), "LA OTRA");
          Click("cmdTienda");
        },
        other(0),
        [&] {
          EXPECT_NE(Text("Text1(0)").find(first), std::string::npos);
          Click("cmdTienda");
        },
        [&] {
          const auto& shops = dynamic_cast<ui::ComboBox&>(*Top().Find("cboTienda"));
          EXPECT_EQ(shops.items.size(), 2u);
          other(1)();
        },
        [&] { EXPECT_EQ(Text("Text1(1)"), "7"); }});
  ASSERT_EQ(told.size(), 2u) << told.back();
  EXPECT_TRUE(told[1].starts_with("Recuperada. Lo que había está en /")) << told[1];
}

TEST_F(StartTest, TheManualOpensWhereF1SearchesNothing) {
  const auto f1_on = [&](const char* control) {
    front_end.engine().FocusOn(*Top().Find(control));
    front_end.engine().PressKey(ui::Key::F1);
  };
  Choose(Make(".demo", Contents::Demonstration));
  Play({[&] {
          Click("cmdAyuda");
          Click("cmdAcercaDe");
        },
        [&] { front_end.AnswerBox(ui::Answer::Ok); }, [&] { Click("cmdVenta"); },
        [&] {
          f1_on("Text1(6)");
          f1_on("Text1(2)");  // the customer: opens nothing
          front_end.engine().CloseBox();
        },
        [&] { Click("cmdDiario"); },
        [&] {
          f1_on("Text1(5)");  // nothing here
          front_end.engine().CloseBox();
        },
        [&] { Click("cmdFacturacion"); },
        [&] {
          f1_on("Text1(5)");
          front_end.engine().CloseBox();
        }});
  EXPECT_EQ(front_end.pages, (std::vector<std::string>{"", "venta", "facturacion"}));
  ASSERT_EQ(told.size(), 1u);
  EXPECT_TRUE(told[0].starts_with("tpv ")) << told[0];
  EXPECT_NE(told[0].find("tienda.db"), std::string::npos) << told[0];
}

}  // namespace
}  // namespace tpv
