// Nasty texts into every field of every screen, into the facade, and onto paper:
// they stay texts.
#include <gtest/gtest.h>

#include <optional>

#include "adapters/headless/scenario/headless_operator.h"
#include "base/text.h"
#include "component/dispatch.h"
#include "data/schema.h"
#include "data/sql_text.h"
#include "host/recorded_till.h"
#include "host/store.h"
#include "tests/test_machine.h"
#include "tests/torture/hostile_text.h"

namespace tpv {
namespace {

// Types every text into every box of the screen on top, leaves it, and closes.
class FieldFiller : public ui::Driver {
 public:
  explicit FieldFiller(ui::Operator& hands) : hands_(hands) {}

  long typed = 0;
  std::string where;  // what is being done, for a failure

  bool Step() override {
    if (hands_.Box() != nullptr) {
      hands_.Answer(ui::Harmless(*hands_.Box()));
    } else if (hands_.HasSearch()) {
      hands_.Find(texts_[searches_++ % texts_.size()]);
      hands_.PickNone();
    } else if (hands_.Top() != form_ && form_ != nullptr) {
      hands_.Close();  // a screen that a field opened
    } else {
      FillNext();
    }
    return true;
  }
  void OnBox(const ui::MessageBox&) override {}

 private:
  void FillNext() {
    if (form_ == nullptr) Begin();
    if (next_ == boxes_.size() * texts_.size()) return End();
    ui::TextBox& box = *boxes_[next_ / texts_.size()];
    const std::string text = texts_[next_++ % texts_.size()].substr(0, 600);
    where = form_->name + "." + box.name + " <- " + text;
    try {
      hands_.Focus(box);
      if (form_->focus != &box) return;
      hands_.Clear();
      hands_.Type(text);
      ++typed;
      if (hands_.Top() == form_) hands_.Press(ui::Key::Tab);
    } catch (const ui::ActionRefused&) {
    }
  }
  void Begin() {
    form_ = hands_.Top();
    for (ui::Control* control : form_->Controls()) {
      if (auto* box = dynamic_cast<ui::TextBox*>(control)) boxes_.push_back(box);
    }
  }
  void End() {
    ui::Form* form = std::exchange(form_, nullptr);
    boxes_.clear();
    next_ = 0;
    form->Close();
  }

  ui::Operator& hands_;
  ui::Form* form_ = nullptr;
  std::vector<ui::TextBox*> boxes_;
  std::size_t next_ = 0;
  std::size_t searches_ = 0;
  std::vector<std::string> texts_ = torture::HostileTexts();
};

class Hostile : public testing::Test {
 protected:
  Hostile() {
    clock.fixed = DateTime{2026, 11, 24, 10, 30, 0, 0};
    store = OpenStore(folder / "tienda.db", Contents::Demonstration, clock);
    till.emplace(*store, front_end, clock, 1);
  }
  std::string RowCounts() {
    std::string text;
    for (const schema::Table& table : schema::Tables()) {
      const std::string home = table.home == schema::Home::Catalogue ? "zrcomun.dbo." : "";
      const auto rows = store->Execute("SELECT COUNT(*) FROM " + home + std::string(table.name));
      text += std::string(table.name) + " " + rows->Field(0).ToPlainText() + "\n";
    }
    return text;
  }

  // A description alone has 23 characters, with its amount 32, and so have units,
  // price and amount.
  static void ExpectColumns(const std::vector<std::string>& lines) {
    constexpr std::size_t kHeadLines = 6;
    for (std::size_t i = kHeadLines; !Trim(lines.at(i)).starts_with("Total..."); ++i) {
      if (lines[i].starts_with("Cliente ")) continue;
      EXPECT_TRUE(Length(lines[i]) == 32 || Length(lines[i]) == 23) << lines[i];
    }
  }

  TestFolder folder;
  StepClock clock;
  std::unique_ptr<Connection> store;
  HeadlessFrontEnd front_end;
  std::optional<RecordedTill> till;
  const std::vector<std::string> texts = torture::HostileTexts();
};

TEST_F(Hostile, NoFieldOfAnyScreenLetsATextBecomeMore) {
  scenario::HeadlessOperator hands(front_end);
  FieldFiller filler(hands);
  front_end.SetDriver(filler);
  const std::string before = RowCounts();
  for (const char* screen : {"zTpv", "zDiario", "zAperturaCierre", "zMovCaja", "zFacturacion",
                             "zDiarioCaja", "zInfPendienteCobro"}) {
    const long typed = filler.typed;
    ASSERT_NO_THROW(
        Invoke(till->component, DispatchId(screen), InvokeKind::Call, {}))
        << screen << " " << filler.where;
    EXPECT_GT(filler.typed, typed) << screen;
  }
  EXPECT_EQ(RowCounts(), before);
}

TEST_F(Hostile, TheFacadeTakesValuesOrSaysWhichIsNone) {
  for (const std::string& text : texts) {
    for (const Member& member : Members()) {
      if (!member.property && member.arguments == 0) continue;
      Variant value(text);
      const bool cancels = member.name == "msCancelaVenta";  // a number would be a sale
      if (cancels && text.find_first_of("0123456789") != std::string::npos) continue;
      try {
        Invoke(till->component, member.id, member.property ? InvokeKind::Put : InvokeKind::Call,
               {&value, 1});
      } catch (const DispatchError& error) {
        EXPECT_NE(std::string(error.what()).find(member.name), std::string::npos) << error.what();
      }
    }
    EXPECT_THROW(DispatchId(text), DispatchError);
  }
}

TEST_F(Hostile, PaperHasItsColumnsAndTheDrawerItsBytes) {
  store->Execute("UPDATE Parametros SET Par_PCajon = 1, Par_SCajon = '27,112,0,25,250'");
  for (const std::string& text : texts) {
    const std::string short_text = sql::Quoted(Left(ValidUtf8(text), 50));
    store->Execute("UPDATE Lav SET Lav_Des = " + short_text + ", Lav_CodArt = " +
                   sql::Quoted(Left(ValidUtf8(text), 20)) + " WHERE Lav_IdCav = 1");
    store->Execute("UPDATE Cav SET Cav_NFiscal = " + short_text + ", Cav_Ref = " + short_text +
                   " WHERE Cav_Id = 1");
    store->Execute("UPDATE Parametros SET Par_Nombre = " + short_text);
    till->settings.Write("OKRA", "Printer", "Spool", text);  // no such printer is installed
    till->component.context().IdAlbaran = 1;
    till->printers.documents.clear();
    till->printers.raw_bytes.clear();
    till->component.Emite_Ticket();
    till->component.Abre_Cajon();
    EXPECT_EQ(Hex(till->printers.raw_bytes), "1B700019FA");
    ASSERT_EQ(till->printers.documents.size(), 1U) << text;
    for (const std::string& line : till->printers.documents[0].lines) {
      EXPECT_EQ(Trim(line).find_first_of(std::string("\0\x1B\n\r", 4)), std::string::npos) << line;
    }
    ExpectColumns(till->printers.documents[0].lines);
  }
}

}  // namespace
}  // namespace tpv
