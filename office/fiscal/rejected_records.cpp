#include "office/fiscal/rejected_records.h"

#include "base/mask.h"
#include "base/text.h"
#include "fiscal/mending.h"
#include "fiscal/records.h"
#include "fiscal/setup.h"
#include "platform/database.h"

namespace tpv::office {

namespace {

using fiscal::Kind;
using fiscal::Record;

std::string KindText(Kind kind) {
  switch (kind) {
    case Kind::Ticket: return "Ticket";
    case Kind::Invoice:
    case Kind::InvoiceOfTickets: return "Factura";
    case Kind::Return: return "Devolución";
    case Kind::Cancellation: return "Anulación";
  }
  return {};
}

std::string ReasonOf(const Record& record) {
  const std::string code = record.reply.code == 0 ? "" : " (" + std::to_string(record.reply.code) + ")";
  return "La Agencia dice" + code + ": " + record.reply.text;
}

std::string ToMend(const Record& record) {
  if (record.reply.duplicate) {
    return "La Agencia tiene otro registro de este número: compruebe que no se vende también con una copia de este "
           "almacén. El registro nuevo sustituye al que tiene.";
  }
  if (!record.buyer_document.empty()) {
    return "Corrija aquí el nombre y el NIF del cliente (también en su ficha), compruebe los de la tienda y subsane.";
  }
  return "Compruebe el nombre y el NIF de la tienda, «" + record.issuer_name + "», " + record.issuer +
         ". Corregidos en los parámetros, subsane.";
}

}  // namespace

RejectedRecords::RejectedRecords(Context& context) : Screen(context, "frmRechazados") {
  caption = "Registros rechazados";
  lstRechazados.layout = {{"Registro", "", 1000, ui::Align::Right},
                          {"Clase", "", 1300, ui::Align::Left},
                          {"Número", "", 1800, ui::Align::Left},
                          {"Fecha", "", 1300, ui::Align::Left},
                          {"Total", "", 1300, ui::Align::Right},
                          {"Motivo", "", 5500, ui::Align::Left}};
  lstRechazados.selected = [this](int) { ShowReason(); };
  cmdSubsanar.click = [this] { Mend(); };
  cmdCerrar.click = [this] { Close(); };
  constexpr int kLongestName = 120;
  Text1.Add(0, "Cliente").max_length = kLongestName;
  Text1[0].columns = 50;
  Text1.Add(1, "NIF").max_length = 9;
  Text1[1].columns = 9;
  rows = {{&lstRechazados}, {&lblMotivo}, {&lblArreglo}, {&Text1[0], &Text1[1]}, {&lblCuenta},
          {&cmdSubsanar, &cmdCerrar}};
}

void RejectedRecords::OnLoad() {
  Screen::OnLoad();
  Read();
}

void RejectedRecords::Read() {
  records_ = fiscal::RejectedRecords(Database());
  lstRechazados.items.clear();
  for (const Record& record : records_) {
    ui::ListItem item;
    item.tag = record.position;
    item.cells = {std::to_string(record.position), KindText(record.kind), record.document.number,
                  ToDayFirst(record.document.date), FormatNumber(static_cast<double>(record.total) / 100, "#,##0.00"),
                  record.reply.text};
    lstRechazados.items.push_back(std::move(item));
  }
  lstRechazados.current_row = records_.empty() ? -1 : 0;
  const std::size_t count = records_.size();
  lblCuenta.caption = count == 0   ? "La Agencia no ha rechazado ninguno"
                      : count == 1 ? "1 registro rechazado"
                                   : std::to_string(count) + " registros rechazados";
  cmdSubsanar.enabled = count > 0;
  ShowReason();
}

void RejectedRecords::ShowReason() {
  const int row = lstRechazados.current_row;
  const Record* const record = row < 0 ? nullptr : &records_.at(static_cast<std::size_t>(row));
  lblMotivo.caption = record == nullptr ? "" : ReasonOf(*record);
  lblArreglo.caption = record == nullptr ? "" : ToMend(*record);
  Text1[0].text = record == nullptr ? "" : record->buyer_name;
  Text1[1].text = record == nullptr ? "" : record->buyer_document;
  Text1[0].visible = Text1[1].visible = !Text1[1].text.empty();
}

void RejectedRecords::Mend() {
  const int row = lstRechazados.current_row;
  if (row < 0) return;
  const Record& record = records_.at(static_cast<std::size_t>(row));
  const std::string text = "¿Hacer un registro nuevo de " + record.document.number +
                           " con los datos de ahora? Se enviará a la Agencia como subsanación";
  if (!Confirm(text, ui::Icon::Question, ui::Answer::No)) return;
  try {
    fiscal::Mend(fiscal::DeskOf(context()), record.position, {Trim(Text1[0].text), Trim(Text1[1].text)});
  } catch (const std::exception& error) {
    return Refuse("No se ha subsanado." + std::string(kLineBreak) + error.what(), &lstRechazados, ui::Icon::Critical);
  }
  Read();
}

}  // namespace tpv::office
