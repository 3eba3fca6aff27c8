// The event engine: what happens in which order when the operator acts.
#include "screen/engine.h"

#include <gtest/gtest.h>

#include "platform/ui/form.h"
#include "base/text.h"
#include "screen/access_keys.h"
#include "screen/list_document.h"

namespace tpv::ui {
namespace {

// A form that writes down what it is told.
class Diary : public Form {
 public:
  Diary() : Form("frmPrueba") {
    rows = {{&frame}, {&accept, &check}};
    frame.Rows({{&fields[0], &fields[1]}, {&fields[2]}});
    for (auto& [index, box] : fields) {
      box->left = [this, i = index] { Note("left " + std::to_string(i)); };
      box->entered = [this, i = index] { Note("entered " + std::to_string(i)); };
    }
    accept.click = [this] { Note("click"); };
  }
  bool OnKeyDown(Key key) override {
    if (key == Key::Enter) Note("down");
    return key == swallowed;
  }
  void OnKeyUp(Key key) override {
    if (key == Key::Enter) Note("up");
  }
  void OnLoad() override { Note("load"); }
  void OnFirstActivate() override { Note("activate"); }
  void OnUnload() override { Note("unload"); }

  void Note(const std::string& what) { diary += diary.empty() ? what : ", " + what; }
  std::string Take() { return std::exchange(diary, {}); }

  TextBoxes fields{*this, "Text1"};
  TextBox &first = fields.Add(0), &second = fields.Add(1), &third = fields.Add(2);
  Frame frame{*this, "Frame1"};
  Button accept{*this, "cmdAceptar", "&Aceptar"};
  CheckBox check{*this, "Check1", "&Ver"};
  Key swallowed = Key::Other;
  std::string diary;
};

class EngineTest : public testing::Test {
 protected:
  EngineTest() {
    engine.Open(form);
    form.Take();
  }
  void Type(std::string_view text) {
    for (const char c : text) engine.TypeCharacter(static_cast<char32_t>(c));
  }
  Diary form;
  Engine engine;
};

TEST_F(EngineTest, ACalendarTypesTheDayIntoItsDateField) {
  form.first.input = Input::Date;
  engine.FocusOn(form.first);
  Type("99");
  EXPECT_THROW(engine.ChooseDay({2026, 12, 1}), ActionRefused);
  engine.PressKey(Key::F4);
  EXPECT_EQ(form.open_calendar, &form.first);
  engine.ChooseDay({2026, 12, 1});
  EXPECT_EQ(form.first.text, "01/12/2026");
  EXPECT_EQ(form.focus, &form.first);
  form.first.locked = true;
  engine.PressKey(Key::F4);
  engine.FocusOn(form.second);
  engine.PressKey(Key::F4);  // no date field
  EXPECT_EQ(form.open_calendar, nullptr);
}

TEST(EngineOpening, LoadsOnceEntersThenActivatesOnce) {
  Diary form;
  Engine engine;
  engine.Load(form);
  engine.Open(form);
  EXPECT_EQ(form.Take(), "load, entered 0, activate");
  engine.Unload(form);
  engine.Open(form);
  EXPECT_EQ(form.Take(), "unload");
}

TEST_F(EngineTest, LeavesBeforeEnteringAndSkipsWhatCannotHaveTheFocus) {
  form.second.enabled = false;
  engine.PressKey(Key::Tab);
  EXPECT_EQ(form.Take(), "left 0, entered 2");
  engine.PressKey(Key::BackTab);
  EXPECT_EQ(form.Take(), "left 2, entered 0");
  EXPECT_THROW(engine.FocusOn(form.second), ActionRefused);
  form.frame.enabled = false;
  engine.KeyUp(Key::Other);
  EXPECT_EQ(form.focus, &form.accept);
  EXPECT_THROW(engine.Click(form.first), ActionRefused);
}

TEST_F(EngineTest, AFieldThatSendsTheFocusElsewhereStopsTheClickThatLeftIt) {
  form.first.left = [this] { form.SetFocus(form.third); };
  engine.Click(form.accept);
  EXPECT_EQ(form.focus, &form.third);
  EXPECT_EQ(form.Take(), "entered 2");
  engine.Click(form.accept);
  EXPECT_EQ(form.Take(), "left 2, click");
}

TEST_F(EngineTest, TwoFieldsThatSendEachOtherTheFocusEnd) {
  form.first.left = [this] { form.SetFocus(form.first); };
  engine.FocusOn(form.second);
  EXPECT_EQ(form.focus, &form.first);
  form.first.entered = [this] { form.SetFocus(form.second); };
  form.second.entered = [this] { form.SetFocus(form.first); };
  engine.FocusOn(form.third);
  EXPECT_NE(form.focus, nullptr);
}

TEST_F(EngineTest, AFailedLeavingKeepsTheFocusAndPassesTheError) {
  Type("1234");
  form.first.left = [this] {
    form.first.text = "12";
    throw std::runtime_error("no hay conexión");
  };
  EXPECT_THROW(engine.PressKey(Key::Tab), std::runtime_error);
  EXPECT_EQ(form.focus, &form.first);
  EXPECT_EQ(form.first.selection_start, 2U);
  form.first.text.clear();
  Type("5");
  EXPECT_EQ(form.first.text, "5");
}

TEST_F(EngineTest, KeysReachTheFormFirstAndTheReleaseIsLostToWhatOpened) {
  engine.FocusOn(form.accept);
  form.Take();
  engine.PressKey(Key::Enter);
  EXPECT_EQ(form.Take(), "down, click");
  form.swallowed = Key::Enter;
  engine.PressKey(Key::Enter);
  EXPECT_EQ(form.Take(), "down, up");
  form.swallowed = Key::Other;
  form.accept.click = [this] { engine.CountOpening(); };
  engine.PressKey(Key::Enter);
  EXPECT_EQ(form.Take(), "down");
}

TEST_F(EngineTest, TypingReplacesTheSelectionUpToTheLimit) {
  form.first.max_length = 4;
  Type("12345");
  EXPECT_EQ(form.first.text, "1234");
  form.first.SelectAll();
  engine.TypeCharacter(U'Ñ');
  EXPECT_EQ(form.first.text, "Ñ");
  engine.PressKey(Key::Backspace);
  EXPECT_EQ(form.first.text, "");
  form.first.locked = true;
  Type("1");
  EXPECT_EQ(form.first.text, "");
  EXPECT_THROW(engine.ClearText(), ActionRefused);
}

TEST(EngineAccessKeys, WhatMarksNoneGetsALetterOfItsOwn) {
  Form form("frmPrueba");
  Button leave(form, "cmdSalir", "Salir"), save(form, "cmdGrabar", "&Seguir"), show(form, "cmdVer", "Vista");
  TextBoxes fields(form, "Text1");
  fields.Add(0, "Valor");
  fields.Add(1, "Lava");
  fields.Add(2, "Vs");
  form.rows = {{&fields[0], &fields[1], &fields[2]}, {&leave, &save, &show}};
  bool left = false;
  leave.click = [&] { left = true; };
  Engine engine;
  engine.Open(form);
  EXPECT_EQ(MarkedCaption(leave), "S&alir") << "the s is taken";
  engine.AccessKey(U'A');
  EXPECT_TRUE(left);
  EXPECT_EQ(MarkedCaption(fields[0]), "Va&lor") << "buttons choose first";
  EXPECT_EQ(MarkedCaption(fields[1]), "&Lava") << "shared by fields";
  for (const int index : {0, 1, 0}) {
    engine.AccessKey(U'l');
    EXPECT_EQ(form.focus, &fields[index]);
  }
  EXPECT_EQ(MarkedCaption(fields[2]), "Vs (&1)") << "no letter is left";
  engine.AccessKey(U'1');
  EXPECT_EQ(form.focus, &fields[2]);
}

TEST_F(EngineTest, AccessKeysClickWhatCarriesThem) {
  engine.AccessKey(U'a');
  EXPECT_EQ(form.Take(), "left 0, click");
  engine.AccessKey(U'V');
  EXPECT_TRUE(form.check.checked);
  form.accept.enabled = false;
  engine.AccessKey(U'a');
  EXPECT_EQ(form.Take(), "");
}

class Journal : public Form {
 public:
  Journal() : Form("frmDiario") {
    caption = "&Diario";
    since.caption = "&Desde";
    since.text = "01/11/2026";
    list.fields = {"Id", "Ticket", "Fecha", "Venta"};
    list.detail_field = "Id";
    list.layout = {{"", "", 0, Align::Left, true}, {"Ticket", ""}, {"Fecha", "DD/MM/YYYY"},
                   {"Venta", "#,##0.00", 900, Align::Right, false, false, true}};
    list.rows = {{Variant(1), Variant("T/10"), Variant(DateTime{2026, 2, 1}), Variant(1234.5)},
                 {Variant(), Variant("  Pan\tnegro"), Variant(), Variant(1234.5)},
                 {Variant(2), Variant("T/9"), Variant(DateTime{2025, 12, 31}), Variant(-3.0)},
                 {Variant(3), Variant("t/9b"), Variant(), Variant(20.25)}};
    list.current_row = 2;
    list.cell_button = [this](int row, int) { pressed = list.Value(row, "Ticket").ToText(); };
    rows = {{&since}, {&list}};
  }
  // The rows' first letters as they stand.
  std::string Order() const {
    std::string order;
    for (int place = 0; place < list.ShownCount(); ++place) order += Trim(list.Cell(list.RowAt(place), 1)) + " ";
    return order;
  }
  TextBox since{*this, "Text1(5)"};
  Grid list{*this, "DbgDiario"};
  std::string pressed;
};

TEST(ListTest, RowsStandAsTheOperatorWantsAndAreActedOnAsTheyStand) {
  Journal form;
  Engine engine;
  engine.Open(form);
  const std::string given = form.Order();
  const std::pair<int, const char*> ups[] = {{1, "T/9 t/9b T/10 Pan\tnegro "},
                                             {2, "t/9b T/9 T/10 Pan\tnegro "},
                                             {3, "T/9 t/9b T/10 Pan\tnegro "}};
  for (const auto& [column, order] : ups) {
    engine.SortBy(form.list, column);
    EXPECT_EQ(form.Order(), order);
    engine.SortBy(form.list, column);
    EXPECT_TRUE(form.Order().starts_with("T/10 Pan")) << form.Order();
    engine.SortBy(form.list, column);
    EXPECT_EQ(form.Order(), given);
  }
  engine.SortBy(form.list, 3);
  EXPECT_EQ(form.list.current_row, 2);
  engine.KeyDown(Key::Down);
  EXPECT_EQ(form.list.current_row, 3);
  engine.SelectRow(form.list, 2);
  EXPECT_EQ(form.list.current_row, 0);
  form.list.layout[1].cell_button = true;
  engine.CellButton(form.list, 1, 1);
  EXPECT_EQ(form.pressed, "t/9b");
  for (const char c : std::string("t/9")) engine.TypeCharacter(static_cast<char32_t>(c));
  EXPECT_EQ(form.Order(), "T/9 t/9b ");
  form.list.rows.erase(form.list.rows.begin() + 2);  // between the events
  EXPECT_EQ(form.list.RowAt(1), -1);
  engine.PressKey(Key::Esc);
  EXPECT_FALSE(form.closing);
  EXPECT_EQ(form.Order(), "t/9b T/10 Pan\tnegro ");
  form.list.arrangeable = false;
  EXPECT_THROW(engine.SortBy(form.list, 1), ActionRefused);
}

TEST(ListTest, LeavesAsItIsSeen) {
  Journal form;
  Engine engine;
  engine.Open(form);
  EXPECT_EQ(ClipboardText(form.list), "Ticket\tFecha\tVenta\nT/10\t01/02/2026\t1234,50\n  Pan negro\t\t1234,50\n"
                                      "T/9\t31/12/2025\t-3,00\nt/9b\t\t20,25\n");
  engine.SortBy(form.list, 3);
  engine.Narrow(form.list, "t/");
  const Report report = ReportOf(form.list, {2026, 11, 24, 10, 30, 0});
  EXPECT_EQ(report.title, "Diario");
  EXPECT_EQ(report.left, (std::vector<std::string>{"Desde: 01/11/2026", "Filtro: t/", "Por Venta"}));
  ASSERT_EQ(report.tables.at(0).rows.size(), 5U);
  EXPECT_EQ(report.tables[0].rows.back().cells, (std::vector<std::string>{"Total", "", "1.251,75"}));
}

}  // namespace
}  // namespace tpv::ui
