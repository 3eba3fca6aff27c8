// Nasty texts into every field of every screen, into the facade, and onto paper:
// they stay texts.
#include <gtest/gtest.h>

#include <functional>
#include <optional>
#include <sstream>
#include <tuple>

#include "adapters/headless/scenario/headless_operator.h"
#include "adapters/headless/scenario/player.h"
#include "base/text.h"
#include "cash/mail_queue.h"
#include "component/dispatch.h"
#include "data/schema.h"
#include "data/sql_text.h"
#include "host/recorded_till.h"
#include "host/store.h"
#include "adapters/sqlite/new_store.h"
#include "adapters/sqlite/sqlite_connection.h"
#include "tests/test_machine.h"
#include "tests/torture/hostile_text.h"
#ifdef TPV_WITH_MAIL
#include "adapters/mail/mail_message.h"
#endif

namespace tpv {
namespace {

// Plays the way to a screen, types every text into every box of it, leaves the box,
// presses what only reads, and closes.
class FieldFiller : public ui::Driver {
 public:
  FieldFiller(ui::Operator& hands, scenario::Player& way, std::string button)
      : hands_(hands), way_(way), button_(std::move(button)) {}

  bool done = false;
  std::string where;  // what is being done, for a failure
  std::function<void()> at_begin;

  bool Step() override {
    if (!way_.Over()) return way_.Step();
    if (hands_.Box() != nullptr) {
      hands_.Answer(ui::Harmless(*hands_.Box()));
    } else if (hands_.HasSearch()) {
      hands_.Find(texts_[searches_++ % texts_.size()]);
      hands_.PickNone();
    } else if (hands_.Top() != form_ && form_ != nullptr) {
      if (closing_ == hands_.Top()) return false;  // the screen itself is gone
      closing_ = hands_.Top();  // a screen that a field opened
      hands_.Close();
    } else {
      closing_ = nullptr;
      return FillNext();
    }
    return true;
  }
  void OnBox(const ui::MessageBox&) override {}

 private:
  bool FillNext() {
    if (form_ == nullptr) Begin();
    done = next_ == boxes_.size() * texts_.size();
    if (done) return false;
    ui::TextBox& box = *boxes_[next_ / texts_.size()];
    const std::string text = texts_[next_++ % texts_.size()].substr(0, 600);
    where = form_->name + "." + box.name + " <- " + text;
    try {
      hands_.Focus(box);
      if (form_->focus != &box) return true;
      hands_.Clear();
      hands_.Type(text);
      if (hands_.Top() == form_) hands_.Press(ui::Key::Tab);
      ui::Control* button = hands_.Top() == form_ ? form_->Find(button_) : nullptr;
      if (button != nullptr) hands_.Click(*button);
    } catch (const ui::ActionRefused&) {
    }
    return true;
  }
  void Begin() {
    at_begin();
    form_ = hands_.Top();
    for (ui::Control* control : form_->Controls()) {
      if (auto* box = dynamic_cast<ui::TextBox*>(control)) boxes_.push_back(box);
    }
  }

  ui::Operator& hands_;
  scenario::Player& way_;
  std::string button_;
  ui::Form* form_ = nullptr;
  ui::Form* closing_ = nullptr;
  std::vector<ui::TextBox*> boxes_;
  std::size_t next_ = 0;
  std::size_t searches_ = 0;
  std::vector<std::string> texts_ = torture::HostileTexts();
};

class Hostile : public testing::Test {
 protected:
  Hostile() {
    clock.fixed = DateTime{2026, 11, 24, 10, 30, 0, 0};
    SetUpTill();
  }
  // A shop of its own each time.
  void SetUpTill() {
    till.reset();
    const std::string path = folder / std::to_string(++shops) + ".db";
    store = OpenStore(path, Contents::Demonstration, clock);
    front_end.emplace();
    till.emplace(*store, *front_end, clock, 1);
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
  int shops = 0;
  std::optional<HeadlessFrontEnd> front_end;
  std::optional<RecordedTill> till;
  const std::vector<std::string> texts = torture::HostileTexts();
};

constexpr const char* kOpenTill =
    "call zTpv\nenter Text1(6) 1\nenter Text1(0) 1\nclick cmdApertura\nenter Text1(14) 100\n"
    "click cmdGrabar\nanswer Yes\n";
constexpr const char* kSale = "key Add\ntype 8436210000011\nkey Enter\nkey Subtract\n";
constexpr const char* kPaid = "click cmdTicket\n";

TEST_F(Hostile, NoFieldOfAnyScreenLetsATextBecomeMore) {
  const std::string sale = std::string(kOpenTill) + kSale;
  const std::string closing = std::string(kOpenTill) + "click cmdCierre\nenter Text1(11) 1\n";
  const std::tuple<const char*, std::string, const char*> ways[] = {
      {"frmTpv", "call zTpv", ""}, {"frmTpv", std::string(kOpenTill) + "key Add", ""},
      {"frmTpv1", sale, ""}, {"frmFactuTicket", sale + "click cmdFactura", ""},
      {"frmNuevoCliente", sale + "click cmdNuevoCli", ""},
      {"frmTpvDevoluciones", std::string(kOpenTill) + "click cmdDevoluciones\nclick cmdNueva", ""},
      {"frmTpvAperturaCaja", "call zTpv\nenter Text1(6) 1\nenter Text1(0) 1\nclick cmdApertura", ""},
      {"frmTpvMovCaja", std::string(kOpenTill) + "click cmdPagos\nenter Text1(0) 1", ""},
      {"frmTpvCierreCaja", closing, "cmdProceso"},
      {"frmFactuTicket", closing + "click cmdProceso\nselect ListView1 0\nenter Text1(4) 1\n"
       "click cmdGrabar\nanswer Yes", ""},
      {"frmTpvDiarioVentas", sale + kPaid + "close\ncall zDiario", "cmdInforme"},
      {"frmTpvDiarioCierres", "call zDiarioCaja", "cmdInforme"},
      {"frmTpvFacturas", "call zFacturacion", "cmdInforme"},
      {"frmTpvPendiente", "call zInfPendienteCobro", "cmdInforme"},
      {"frmArticulo", "office\nclick cmdArticulos\nclick cmdNuevo", ""},
      {"frmPrecios", "office\nclick cmdPrecios", "cmdCalcular"},
      {"frmEtiquetas", "office\nclick cmdEtiquetas", ""},
      {"frmTecla", "office\nclick cmdTeclas\nclick cmdNuevo", ""},
      {"frmParametros", "office\nclick cmdParametros", ""},
      {"frmImportar", "office\nclick cmdImportar", "cmdVer"}};
  for (const auto& [screen, way, button] : ways) {
    SetUpTill();
    scenario::HeadlessOperator hands(*front_end);
    std::ostringstream transcript;
    scenario::Player player(till->rig, hands, transcript);
    FieldFiller filler(hands, player, button);
    std::string before;
    std::string found;
    filler.at_begin = [&] { found = hands.Top() ? hands.Top()->name : "", before = RowCounts(); };
    front_end->SetDriver(filler);
    std::istringstream script(way);
    ASSERT_NO_THROW(EXPECT_TRUE(player.Play(scenario::ReadScript(script, screen)))) << filler.where;
    EXPECT_EQ(found, screen) << transcript.str();
    EXPECT_TRUE(filler.done) << filler.where;
    EXPECT_EQ(RowCounts(), before) << screen;
  }
}

#ifdef TPV_WITH_MAIL
// Rows of the queue, whoever wrote them, down to the letters that travel.
TEST_F(Hostile, NoTextOfAMailBecomesAHeader) {
  const std::vector<std::string> expected = {"Date", "From",         "To",           "Message-ID",
                                             "Subject", "MIME-Version", "Content-Type", "Content-Transfer-Encoding"};
  for (const std::string& text : texts) {
    const std::string value = sql::Quoted(Left(ValidUtf8(text), 50));
    store->Execute("DELETE FROM QCIERRES");
    store->Execute("UPDATE Parametros SET Par_Nombre = " + value + ", par_tpvemail = " + value);
    store->Execute("INSERT INTO QCIERRES (QCIERRES_Email, QCIERRES_Asunto, QCIERRES_Texto) VALUES (" +
                   value + ", " + value + ", " + sql::Quoted(ValidUtf8(text)) + ")");
    QueueClosureMail(till->component->context(), text);
    till->mail.mails.clear();
    SendQueuedMails(till->component->context());
    ASSERT_GE(till->mail.mails.size(), 1U);
    for (const Mail& mail : till->mail.mails) {
      for (const std::string& address : Addresses(mail.to)) {
        EXPECT_EQ(address.find_first_of(" \t\r\n<>,;"), std::string::npos) << address;
      }
      const std::string letter = MailMessage(mail, "tienda@tienda.es", {"jefa@tienda.es"}, clock.Now());
      const std::size_t body = letter.find("\r\n\r\n");
      std::vector<std::string> names;
      for (const std::string& line : Split(letter.substr(0, body), "\r\n")) {
        EXPECT_EQ(line.find_first_of("\r\n"), std::string::npos) << line;
        if (!line.starts_with(' ')) names.push_back(line.substr(0, line.find(':')));
      }
      EXPECT_EQ(names, expected) << letter;
      EXPECT_EQ(letter.find_first_not_of("\r\n+/=0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz",
                                         body), std::string::npos);
    }
  }
}
#endif

TEST_F(Hostile, AStoreIsItsFileWhateverItsName) {
  std::filesystem::create_directory(folder / "stores");
  for (const char* name : {"o'brien", "a;b", "-x", "?mode=ro", "a%2Fb", "a'||'b", "# x", "ñ\n😀"}) {
    CreateStore(folder / "stores/" + name + ".db");
    SqliteConnection(folder / "stores/" + name + ".db", clock).Execute("SELECT * FROM Cav");
    EXPECT_EQ(ModeOf(folder / "stores/" + name + ".db"), 0600U);
  }
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder / "stores"), {}), 8);
}

TEST_F(Hostile, TheFacadeTakesValuesOrSaysWhichIsNone) {
  for (const std::string& text : texts) {
    for (const Member& member : Members()) {
      if (!member.property && member.arguments == 0) continue;
      Variant value(text);
      const bool cancels = member.name == "msCancelaVenta";  // a number would be a sale
      if (cancels && text.find_first_of("0123456789") != std::string::npos) continue;
      try {
        Invoke(*till->component, member.id, member.property ? InvokeKind::Put : InvokeKind::Call,
               {&value, 1});
      } catch (const DispatchError& error) {
        EXPECT_NE(std::string(error.what()).find(member.name), std::string::npos) << error.what();
      }
    }
    EXPECT_THROW(DispatchId(text), DispatchError);
  }
}

TEST_F(Hostile, PaperHasItsColumnsAndTheDrawerItsBytes) {
  const Transaction undone(*store);
  store->Execute("UPDATE Parametros SET Par_PCajon = 1, Par_SCajon = '27,112,0,25,250'");
  for (const std::string& text : texts) {
    const std::string short_text = sql::Quoted(Left(ValidUtf8(text), 50));
    store->Execute("UPDATE Lav SET Lav_Des = " + short_text + ", Lav_CodArt = " +
                   sql::Quoted(Left(ValidUtf8(text), 20)) + " WHERE Lav_IdCav = 1");
    store->Execute("UPDATE Cav SET Cav_NFiscal = " + short_text + ", Cav_Ref = " + short_text +
                   " WHERE Cav_Id = 1");
    store->Execute("UPDATE Parametros SET Par_Nombre = " + short_text);
    till->settings.Write("OKRA", "Printer", "Spool", text);  // no such printer is installed
    till->component->context().IdAlbaran = 1;
    till->printers.documents.clear();
    till->printers.raw_bytes.clear();
    till->component->Emite_Ticket();
    till->component->Abre_Cajon();
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
