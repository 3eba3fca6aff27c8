#include "office/fiscal/records_to_mend.h"

#include <algorithm>

#include "base/mask.h"
#include "base/text.h"
#include "fiscal/mending.h"
#include "fiscal/record_columns.h"
#include "fiscal/records.h"
#include "fiscal/setup.h"
#include "platform/database.h"

namespace tpv::office {

namespace {

using fiscal::Kind;
using fiscal::Record;
using fiscal::State;

std::string KindText(Kind kind) {
  switch (kind) {
    case Kind::Ticket: return "Ticket";
    case Kind::Invoice:
    case Kind::InvoiceOfTickets: return "Factura";
    case Kind::Return: return "Devolución";
    case Kind::InvoiceOfReturn: return "Factura de devolución";
    case Kind::Cancellation: return "Anulación";
  }
  return {};
}

std::string ReasonOf(const Record& record) {
  const std::string code = record.reply.code == 0 ? "" : " (" + std::to_string(record.reply.code) + ")";
  return "La Agencia dice" + code + ": " + record.reply.text;
}

std::string ToMend(const Record& record) {
  if (record.reply.duplicate && record.reply.state == State::Rejected) {
    return "La Agencia tiene otro registro de este número: compruebe que no se vende también con una copia de este "
           "almacén. El registro nuevo sustituye al que tiene.";
  }
  if (!record.buyer_document.empty()) {
    return "Corrija aquí el nombre y el NIF del cliente (también en su ficha), compruebe los de la tienda y subsane.";
  }
  return "Compruebe el nombre y el NIF de la tienda, «" + record.issuer_name + "», " + record.issuer +
         ". Corregidos en los parámetros, subsane.";
}

// "2 rechazados, 1 aceptado con errores".
std::string Counted(const std::vector<Record>& records) {
  const auto rejected = std::count_if(records.begin(), records.end(),
                                      [](const Record& record) { return record.reply.state == State::Rejected; });
  const auto told = [](std::ptrdiff_t count, const std::string& one, const std::string& more) {
    return count == 0 ? std::string() : std::to_string(count) + " " + (count == 1 ? one : more);
  };
  const std::string refused = told(rejected, "rechazado", "rechazados");
  const std::string wrong = told(std::ssize(records) - rejected, "aceptado con errores", "aceptados con errores");
  if (records.empty()) return "No hay nada que subsanar";
  return refused + (refused.empty() || wrong.empty() ? "" : ", ") + wrong;
}

}  // namespace

RecordsToMend::RecordsToMend(Context& context) : Screen(context, "frmSubsanar") {
  caption = "Registros por subsanar";
  lstRegistros.layout = {{"Registro", "", 1000, ui::Align::Right},
                         {"Clase", "", 1300, ui::Align::Left},
                         {"Número", "", 1800, ui::Align::Left},
                         {"Fecha", "", 1300, ui::Align::Left},
                         {"Total", "", 1300, ui::Align::Right},
                         {"Estado", "", 1500, ui::Align::Left},
                         {"Motivo", "", 3200, ui::Align::Left}};
  lstRegistros.selected = [this](int) { ShowReason(); };
  cmdSubsanar.click = [this] { Mend(); };
  cmdCerrar.click = [this] { Close(); };
  constexpr int kLongestName = 120;
  Text1.Add(0, "Cliente").max_length = kLongestName;
  Text1[0].columns = 50;
  Text1.Add(1, "NIF").max_length = 9;
  Text1[1].columns = 9;
  lblMotivo.stretch = lblArreglo.stretch = true;
  lblMotivo.lines = lblArreglo.lines = 2;
  Frame1.Rows({{&lstRegistros}, {&lblCuenta}});
  rows = {{&Frame1}, {&lblMotivo}, {&lblArreglo}, {&Text1[0], &Text1[1]}, {&cmdSubsanar, &cmdCerrar}};
}

void RecordsToMend::OnLoad() {
  Screen::OnLoad();
  Read();
}

void RecordsToMend::Read() {
  records_ = fiscal::RecordsToMend(Database());
  const fiscal::Mode mode = fiscal::ModeOf(fiscal::DeskOf(context()));
  std::erase_if(records_, [mode](const Record& record) { return record.mode != mode; });  // of a trial that ended
  lstRegistros.items.clear();
  for (const Record& record : records_) {
    ui::ListItem item;
    item.tag = record.position;
    item.cells = {std::to_string(record.position), KindText(record.kind), record.document.number,
                  ToDayFirst(record.document.date), FormatNumber(fiscal::ToEuros(record.total), "#,##0.00"),
                  record.reply.state == State::Rejected ? "Rechazado" : "Con errores", record.reply.text};
    lstRegistros.items.push_back(std::move(item));
  }
  lstRegistros.current_row = records_.empty() ? -1 : 0;
  lblCuenta.caption = Counted(records_);
  cmdSubsanar.enabled = !records_.empty();
  ShowReason();
}

const Record* RecordsToMend::Current() const {
  const int row = lstRegistros.current_row;
  return row < 0 ? nullptr : &records_.at(static_cast<std::size_t>(row));
}

void RecordsToMend::ShowReason() {
  const Record* const record = Current();
  lblMotivo.caption = record == nullptr ? "" : ReasonOf(*record);
  lblArreglo.caption = record == nullptr ? "" : ToMend(*record);
  Text1[0].text = record == nullptr ? "" : record->buyer_name;
  Text1[1].text = record == nullptr ? "" : record->buyer_document;
  Text1[0].visible = Text1[1].visible = !Text1[1].text.empty();
}

void RecordsToMend::Mend() {
  const Record* const record = Current();
  if (record == nullptr) return;
  const std::string text = "¿Hacer un registro nuevo de " + record->document.number +
                           " con los datos de ahora? Se enviará a la Agencia como subsanación";
  if (!Confirm(text, ui::Icon::Question, ui::Answer::No)) return;
  try {
    fiscal::Mend(fiscal::DeskOf(context()), record->position, {Trim(Text1[0].text), Trim(Text1[1].text)});
  } catch (const std::exception& error) {
    return Refuse("No se ha subsanado." + std::string(kLineBreak) + error.what(), &lstRegistros, ui::Icon::Critical);
  }
  Read();
}

}  // namespace tpv::office
