#include "cash/receipt.h"

#include <memory>
#include <string>

#include "base/mask.h"
#include "base/text.h"
#include "context/context.h"
#include "data/codes.h"
#include "data/sql_text.h"
#include "data/statements.h"
#include "debt/customer_debt.h"
#include "output/ticket_text.h"
#include "platform/database.h"
#include "platform/printer.h"
#include "platform/settings.h"

namespace tpv {

namespace {

class Receipt {
 public:
  Receipt(Context& context, std::int32_t entry)
      : context_(context), id_(sql::Number(std::int64_t{entry})) {}

  void Print() {
    const auto entry = Execute(
        "SELECT *, (SELECT Age_Nom FROM Age WHERE Age_Id = DiaCaj_IdAge) as Vendedor FROM DiaCaj "
        "WHERE DiaCaj_Id = " +
        id_);
    if (entry->Eof()) throw PrintError("El apunte ya no está en el diario de caja");
    const bool collection =
        entry->Field("DiaCaj_Tipo").IntOr(0) == static_cast<int>(JournalEvent::PendingCollection);
    const std::string title = (collection ? "Recibo de cobro Nº " : "Recibo de pago Nº ") + id_;
    document_ = context_.ports.printers.Begin(title);
    PrintHead(*entry, title);
    collection ? PrintCollection(*entry) : PrintPayment(*entry);
    document_->End();
  }

 private:
  std::unique_ptr<Recordset> Execute(const std::string& statement) {
    return context_.Database().Execute(statement);
  }

  void Line(const std::string& text) {
    PrintTextLine(*document_, text);
    CloseGap(*document_);
  }
  void AmountLine(const char* label, double euros) { Line(DescriptionAndAmount(label, euros)); }

  void PrintHead(const Recordset& entry, const std::string& title) {
    document_->SetFont("Courier New", 9, true);
    document_->SetY(0);
    Line(context_.Parameter("Par_Nombre").TextOr(""));
    document_->SetFont("Courier New", 9, false);
    Line("CIF/NIF " + context_.Parameter("Par_Doc").TextOr(""));
    Line(title);
    Line(Format(entry.Field("DiaCaj_Fecha"), "DD/MM/YYYY HH:MM") + " - Caja " +
         entry.Field("DiaCaj_Caja").TextOr(""));
    Line("Vendedor " + entry.Field("Vendedor").TextOr(""));
  }

  void PrintCollection(const Recordset& entry) {
    const std::int32_t customer = entry.Field("DiaCaj_IdCliPr").IntOr(0);
    const auto name = Execute("SELECT CLI_COD, CLI_NOM, CLI_APE1 FROM Cli WHERE CLI_ID = " +
                              sql::Number(std::int64_t{customer}));
    if (!name->Eof()) {
      Line(TrimRight("Cliente " + name->Field(0).TextOr("") + " " + name->Field(1).TextOr("") +
                     " " + name->Field(2).TextOr("")));
    }
    const auto tickets =
        Execute("SELECT " + std::string(kTicketReference) +
                " AS Ticket, Tco_Importe FROM Tco INNER JOIN Cav ON Cav_Id = Tco_IdCav "
                "WHERE Tco_IdDiaCaj = " +
                id_ + " ORDER BY Cav_Fecha, Cav_Id");
    for (; !tickets->Eof(); tickets->MoveNext()) {
      Line(DescriptionAndAmount("Ticket " + tickets->Field(0).TextOr(""),
                                tickets->Field(1).NumberOr(0)));
    }
    AmountLine("Cobrado...............", entry.Field("DiaCaj_Cobrado").NumberOr(0));
    AmountLine("Saldo pendiente.......", CustomerDebt(context_, customer));
  }

  void PrintPayment(const Recordset& entry) {
    Line(DescriptionAndAmount(entry.Field("DiaCaj_Obs").TextOr(""),
                              entry.Field("DiaCaj_Entrega").NumberOr(0)));
    Line("Recibí:");
  }

  Context& context_;
  std::string id_;
  std::unique_ptr<PrintDocument> document_;
};

}  // namespace

bool WantsReceipts(Context& context) {
  return IsSwitchedOn(context.ports.settings, "TPV", "Paper", "Receipts");
}

void PrintReceipt(Context& context, std::int32_t entry) { Receipt(context, entry).Print(); }

}  // namespace tpv
