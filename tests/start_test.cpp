// The program's first window: it makes the shop, hands the component its context
// and remembers the choices.
#include "host/start_screen.h"

#include <gtest/gtest.h>

#include <deque>

#include "adapters/headless/headless_front_end.h"
#include "host/machine.h"
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
    StartScreen screen(machine, front_end, silence);
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

TEST_F(StartTest, OpensTheDemonstrationAndRemembersTheChoices) {
  Play({[&] {
          EXPECT_TRUE(std::filesystem::exists(UsualStore()));
          EXPECT_EQ(Text("Text1(1)"), "1");
          Enter("Text1(1)", "2");
          auto& agents = dynamic_cast<ui::ComboBox&>(*Top().Find("cboVendedor"));
          front_end.engine().SelectRow(agents, 1);
          Click("cmdVenta");
        },
        [&] {
          EXPECT_EQ(Top().name, "frmTpv");
          EXPECT_EQ(Text("Text1(6)"), "2");  // whatever the store's parameter says
          EXPECT_NE(Text("Text1(1)"), "");   // the seller chosen
          front_end.engine().CloseBox();
        },
        [&] { EXPECT_EQ(Top().name, "frmInicio"); }});
  Play({[&] {
    EXPECT_EQ(Text("Text1(1)"), "2");
    EXPECT_EQ(dynamic_cast<ui::ComboBox&>(*Top().Find("cboVendedor")).index, 1);
  }});
  EXPECT_TRUE(told.empty());
}

TEST_F(StartTest, TheManualOpensWhereF1SearchesNothing) {
  const auto f1_on = [&](const char* control) {
    front_end.engine().FocusOn(*Top().Find(control));
    front_end.engine().PressKey(ui::Key::F1);
  };
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

TEST_F(StartTest, AWrongStoreOrTillChangesNothing) {
  std::string before;
  Play({[&] {
          before = Text("Text1(0)");
          Enter("Text1(0)", "/no/hay/tienda.db");
        },
        [&] { front_end.AnswerBox(ui::Answer::Ok); },
        [&] {
          EXPECT_EQ(Text("Text1(0)"), before);
          Enter("Text1(1)", "40000");
          Click("cmdVenta");
        },
        [&] { front_end.AnswerBox(ui::Answer::Ok); },
        [&] { EXPECT_EQ(Top().focus, Top().Find("Text1(1)")); }});
  ASSERT_EQ(told.size(), 2u);
  EXPECT_EQ(told[1], "El número de caja no es válido");
  EXPECT_FALSE(std::filesystem::exists("/no/hay"));
}

}  // namespace
}  // namespace tpv
