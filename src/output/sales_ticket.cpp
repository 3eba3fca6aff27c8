#include "output/sales_ticket.h"

#include <memory>
#include <string>

#include "base/mask.h"
#include "base/rounding.h"
#include "base/text.h"
#include "context/context.h"
#include "data/sql_text.h"
#include "output/record_code.h"
#include "output/ticket_text.h"
#include "platform/database.h"
#include "platform/printer.h"
#include "platform/settings.h"
#include "platform/ui/front_end.h"

namespace tpv {

namespace {

class SalesTicket {
 public:
  SalesTicket(Context& context, TicketPaper paper, bool always)
      : context_(context), paper_(paper), always_(always), id_(sql::Number(std::int64_t{context.IdAlbaran})) {}

  void Print() {
    Compose();
    if (document_) document_->End();
  }

 private:
  void Compose() {
    const Snapshot snapshot(context_.Database());
    const double total = ReadTotal();
    const auto lines = Execute(
        "SELECT Cav_Serie,Cav_Numero,Cav_Fecha,Cav_Ref,Cav_NFiscal,Lav_Des,Lav_Uni,Lav_Dto1,"
        "dbo.FncPrecioConIva(lav_id) as Precio, dbo.FncImporteConIva(lav_id) as Importe, "
        "Age_Nom as Agente, Cli_Cod FROM Lav INNER JOIN Cav ON Lav_IdCav = Cav_Id INNER JOIN "
        "zrcomun.dbo.tivas on Tiva_Id = Lav_Tiva INNER JOIN Cli ON Cli_Id = Cav_IdCli INNER JOIN "
        "Age ON Age_Id = Cav_Agente WHERE Lav_IdCav = " + id_);
    const auto payment = Execute(
        "SELECT TOP 1 DiaCaj_Modo,DiaCaj_Entrega,DiaCaj_Tarjeta,DiaCaj_Devolucion,"
        "DiaCaj_Descuento,DiaCaj_Cobrado FROM Tco INNER JOIN DiaCaj ON DiaCaj_Id =  Tco_IdDiaCaj "
        "WHERE Tco_IdCav = " + id_ + " AND DiaCaj_Tipo=1  ORDER BY DiaCaj_Fecha");
    if (lines->Eof()) throw PrintError("La venta no tiene líneas");
    if (!always_ && DiscountOf(*payment) == 0) return;
    const std::string code = CodeOfSale(context_, context_.IdAlbaran);
    document_ = context_.ports.printers.Begin("Ticket " + lines->Field("Cav_Serie").TextOr("") +
                                              lines->Field("Cav_Numero").TextOr("") +
                                              (paper_ == TicketPaper::ShopCopy ? ", copia de la tienda" : ""));
    document_->SetFont("Courier New", 9, true);
    document_->SetY(0);
    if (!code.empty()) PrintRecordCode(*document_, code);
    PrintHeader(*lines);
    PrintMark();
    const std::string agent = lines->Field("Agente").TextOr("");
    const LineColumns columns(*lines);
    for (; !lines->Eof(); lines->MoveNext()) PrintSoldLine(*lines, columns);
    PrintTotals(total, *payment);
    PrintFooter(agent);
  }

  std::unique_ptr<Recordset> Execute(const std::string& statement) {
    return context_.Database().Execute(statement);
  }

  double ReadTotal() {
    const auto row =
        Execute("select sum(dbo.FncImporteConIva(lav_id)) as Total From Lav WHERE Lav_IdCav = " + id_);
    return row->Eof() ? 0 : row->Field("Total").NumberOr(0);
  }

  std::string Parameter(std::string_view name) { return context_.Parameter(name).TextOr(""); }

  void Line(std::string_view text) { PrintTextLine(*document_, text); }
  void CloseUp() { CloseGap(*document_); }

  void PrintHeader(const Recordset& sale) {
    Line(Parameter("Par_Nombre"));
    document_->SetFont("Courier New", 9, false);
    CloseUp();
    Line(TrimRight(Parameter("Par_Sg") + " " + Parameter("Par_NombreVia")));
    CloseUp();
    Line(TrimRight(Parameter("Par_Cp") + " " + Parameter("Par_Poblacion")));
    CloseUp();
    Line("Telefono " + Parameter("Par_Telefono"));
    CloseUp();
    Line("CIF/NIF " + Parameter("Par_Doc"));
    CloseUp();
    Line(Format(sale.Field("Cav_Fecha"), "DD/MM/YYYY HH:MM") + " - " +
         sale.Field("Cav_Ref").TextOr("") + " - " + sale.Field("Cav_Serie").TextOr("") +
         sale.Field("Cav_Numero").TextOr(""));
    const std::string code = sale.Field("Cli_COD").TextOr("");
    if (code == Parameter("Par_Clicon")) return;
    CloseUp();
    Line(TrimRight("Cliente " + code + " " + sale.Field("Cav_NFiscal").TextOr("")));
  }

  void PrintMark() {
    const bool marked = IsSwitchedOn(context_.ports.settings, "TPV", "Paper", "MarkReprints");
    const char* mark = paper_ == TicketPaper::ShopCopy            ? "* COPIA PARA LA TIENDA *"
                       : paper_ == TicketPaper::Reprint && marked ? "* REIMPRESION *"
                                                                  : nullptr;
    if (mark == nullptr) return;
    CloseUp();
    Line(Centre32(mark));
  }

  static double DiscountOf(const Recordset& payment) {
    return payment.Eof() ? 0 : payment.Field("DiaCaj_Descuento").NumberOr(0);
  }

  // Looked up once for all lines.
  struct LineColumns {
    explicit LineColumns(const Recordset& lines)
        : description(lines.IndexOf("Lav_Des")),
          units(lines.IndexOf("Lav_Uni")),
          price(lines.IndexOf("Precio")),
          amount(lines.IndexOf("Importe")),
          discount(lines.IndexOf("Lav_Dto1")) {}
    std::size_t description, units, price, amount, discount;
  };

  void PrintSoldLine(const Recordset& line, const LineColumns& columns) {
    const std::string description = line.Field(columns.description).TextOr("");
    const double units = line.Field(columns.units).NumberOr(0);
    const double price = line.Field(columns.price).NumberOr(0);
    const double amount = line.Field(columns.amount).NumberOr(0);
    if (units > 1) {
      Line(Description23(description));
      CloseUp();
      PrintUnits(units, price, amount);
    } else {
      Line(DescriptionAndAmount(description, amount));
    }
    const double discount = line.Field(columns.discount).NumberOr(0);
    if (discount == 0) return;
    CloseUp();
    Line("Precio Ud. " + FormatNumber(price, "#,##0.00") + " - " + FormatNumber(discount, "##") +
         "% Dto");
  }

  // Large numbers close up first, and then the amount gets a line of its own.
  void PrintUnits(double units, double price, double amount) {
    const std::string sold = "  " + Amount9(units) + " x " + Amount9(price);
    const std::string all = sold + Amount9(amount);
    if (Length(all) <= kTicketWidth) return Line(all);
    const std::string closed = Trim(Amount9(units)) + " x " + Trim(Amount9(price));
    const std::string euros = Trim(Amount9(amount));
    if (Length(closed) + 1 + Length(euros) <= kTicketWidth) return Line(Right32(closed + " " + euros));
    Line(PadRight(closed, kTicketWidth));
    CloseUp();
    Line(Right32(euros));
  }

  void AmountLine(std::string_view label, double euros) {
    Line(Right32(std::string(label) + Amount9(euros)));
  }

  void PrintTotals(double total, const Recordset& payment) {
    AmountLine("Total......", total);
    CloseUp();
    if (payment.Eof()) {
      AmountLine("Entrega....", 0);
      CloseUp();
      AmountLine("A credito..", total);
      return;
    }
    const double card = payment.Field("DiaCaj_Tarjeta").NumberOr(0);
    if (card != 0) AmountLine("Tarjeta....", card);
    const double cash = payment.Field("DiaCaj_Entrega").NumberOr(0);
    if (cash != 0) {
      AmountLine("Entrega....", cash);
      CloseUp();
      AmountLine("Devolucion.", payment.Field("DiaCaj_Devolucion").NumberOr(0));
    }
    const double discount = DiscountOf(payment);
    if (paper_ == TicketPaper::ShopCopy && discount != 0) {
      CloseUp();
      AmountLine("Descuento..", discount);
    }
    const double pending =
        RoundHalfAway(total - (payment.Field("DiaCaj_Cobrado").NumberOr(0) + discount), 2);
    if (pending == 0) return;
    CloseUp();
    AmountLine("A credito..", pending);
  }

  void PrintFooter(const std::string& agent) {
    Line("Le atendio " + Left(OneLine(agent), 21));
    Line(Centre32("- Impuestos incluidos -"));
    Line(Centre32("* GRACIAS POR SU VISITA *"));
    for (int i = 0; i < 4; ++i) Line("");
  }

  Context& context_;
  const TicketPaper paper_;
  const bool always_;  // else only with a discount
  std::string id_;
  std::unique_ptr<PrintDocument> document_;
};

void PrintOrTell(Context& context, TicketPaper paper, bool always) {
  try {
    SalesTicket(context, paper, always).Print();
  } catch (const std::exception& error) {
    ui::MessageBox box;
    box.text = "Error de impresión: " + std::string(error.what());
    box.icon = ui::Icon::Critical;
    context.ports.ui.Show(box);
  }
}

constexpr std::string_view kWithDiscount = "descuentos";

}  // namespace

void PrintSalesTicket(Context& context, TicketPaper paper) { PrintOrTell(context, paper, true); }

bool IsShopCopySetting(std::string_view value) { return EqualNoCase(value, kWithDiscount) || ReadSwitch(value); }

void PrintShopCopy(Context& context) {
  const std::string wanted = context.ports.settings.Read("TPV", "Paper", "ShopCopy");
  const bool all = ReadSwitch(wanted).value_or(false);
  if (all || EqualNoCase(wanted, kWithDiscount)) PrintOrTell(context, TicketPaper::ShopCopy, all);
}

}  // namespace tpv
