// A form of a till in real windows, and the hands that work it.
#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <deque>
#include <functional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "adapters/qt/native_input.h"
#include "adapters/qt/qt_operator.h"
#include "host/windows/application.h"

namespace tpv::qt {

class Till : public ui::Form {
 public:
  explicit Till(ui::FrontEnd& ui) : Form("frmPrueba"), front_end(ui) {
    goods.layout = {{"Id", "", 0, ui::Align::Left, true, false},
                    {"Articulo", "", 3000, ui::Align::Left, false, true}};
    goods.fields = {"Id", "Articulo"};
    for (int i = 0; i < 300; ++i) {
      goods.rows.push_back({Variant(i), Variant("Articulo " + std::to_string(i))});
    }
    goods.cell_button = [this](int row, int) { pressed.push_back("cell " + std::to_string(row)); };
    marks.layout = {{"Ticket", "", 3000, ui::Align::Left, false, false}};
    marks.check_boxes = true;
    marks.items = {{{"T/1"}, false, 1}, {{"T/2"}, false, 2}};
    price.max_length = 6;
    refuse.click = [this] {
      ui::MessageBox box;
      box.text = "No ha indicado el importe";
      front_end.Show(box);
      SetFocus(price);
    };
    fail.click = [] { throw std::runtime_error("se ha roto"); };
    rows = {{&price, &units}, {&goods}, {&marks}, {&refuse, &fail}};
  }
  void OnKeyUp(ui::Key key) override {
    if (key == ui::Key::Enter) tab_sent = true;
  }
  void OnBoxClosedByKey() override { ++closed_by_key; }
  char32_t OnCharacter(ui::TextBox&, char32_t character) override {
    return character == U'.' ? U',' : character;
  }

  ui::FrontEnd& front_end;
  ui::TextBoxes fields{*this, "Text1"};
  ui::TextBox &price = fields.Add(0, "Precio"), &units = fields.Add(1, "Unidades");
  ui::Grid goods{*this, "dbgVenta"};
  ui::ListView marks{*this, "ListView1"};
  ui::Button refuse{*this, "cmdGrabar", "&Grabar"};
  ui::Button fail{*this, "cmdFalla", "&Fallar"};
  std::vector<std::string> pressed;
  int closed_by_key = 0;
};

// Runs its steps one by one, whatever is on top.
class Steps : public ui::Driver {
 public:
  std::deque<std::function<void()>> steps;
  bool Step() override {
    if (steps.empty()) return false;
    const auto step = std::move(steps.front());
    steps.pop_front();
    SettleWindows();
    step();
    return true;
  }
  void OnBox(const ui::MessageBox&) override {}
};

class WindowsTest : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    application = new Application;
  }
  static void TearDownTestSuite() { delete std::exchange(application, nullptr); }

  // Shows the form and plays the steps on it.
  void Play(std::deque<std::function<void()>> steps) {
    driver.steps = std::move(steps);
    windows.SetDriver(driver);
    windows.ShowModal(form);
  }
  void Press(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier, const char* text = "") {
    SendStroke({key, modifiers, text});
  }

  static inline Application* application = nullptr;
  QtFrontEnd windows;
  QtOperator hands{windows};
  Till form{windows};
  Steps driver;
};

}  // namespace tpv::qt
