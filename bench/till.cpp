#include "bench/till.h"

#include <stdexcept>

#include "base/text.h"
#include "data/till_state.h"
#include "debt/customer_debt.h"
#include "platform/database.h"
#include "suite/number_series.h"

namespace tpv::bench {

Till::Till(Connection& connection, int number)
    : connection_(connection), number_(std::to_string(number)) {
  objects_.SetPorts(ports_);
  front_end_.SetDriver(*this);
  context().MyBd = std::make_shared<suite::StoreDatabase>(connection_, 1, front_end_, clock_, settings_);
  if (!TillIsOpen(connection_, number_)) {
    connection_.Execute("INSERT INTO DiaCaj (DiaCaj_Caja, DiaCaj_Tipo, DiaCaj_Modo) VALUES (" +
                        number_ + ", 0, 1)");
  }
  screen_ = std::make_unique<FrmTpv>(context());
  front_end_.engine().Open(*screen_);
  screen_->Text1[6].text = number_;
  front_end_.engine().FocusOn(screen_->Text1[0]);
  Type("1");
  front_end_.engine().PressKey(ui::Key::Enter);
}

void Till::Type(const std::string& text) {
  for (const char c : text) front_end_.engine().TypeCharacter(static_cast<char32_t>(c));
}

void Till::StartSale() { front_end_.engine().PressKey(ui::Key::Add); }

void Till::Scan(const std::string& code) {
  Type(code);
  front_end_.engine().PressKey(ui::Key::Enter);
}

void Till::Finish() {
  printers_.documents.clear();
  front_end_.engine().PressKey(ui::Key::Subtract);
  if (printers_.documents.size() != 1) throw std::runtime_error("no ticket was printed");
}

bool Till::Step() {
  front_end_.engine().Click(*front_end_.engine().Top()->Find("cmdTicket"));
  return true;
}

void Till::OnBox(const ui::MessageBox& box) { throw std::runtime_error(box.text); }

void Till::State() {
  TillIsOpen(connection_, number_);
  connection_.Execute("Select max(Cav_ID) from Cav Where Cav_Ticket = 1 and Cav_Caja = " + number_)->Field(0);
  const Transaction given_back(connection_);
  suite::NextNumber(connection_, "ALBVENTA", "T", "SELECT MAX(Cav_Numero) FROM Cav WHERE Cav_Serie = 'T'");
}

double Till::Debt(int customer) { return CustomerDebt(context(), customer); }

}  // namespace tpv::bench
