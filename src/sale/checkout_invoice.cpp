// Closing a sale with an invoice instead of a ticket.
#include "base/number_text.h"
#include "base/text.h"
#include "data/codes.h"
#include "data/sql_text.h"
#include "fiscal/issuing.h"
#include "invoicing/ticket_invoice.h"
#include "output/cash_drawer.h"
#include "platform/database.h"
#include "platform/objects.h"
#include "sale/checkout_dialog.h"
#include "sale/sale_storage.h"

namespace tpv {

using ui::Icon;

std::int32_t FrmTpv1::PaymentMethod() const { return LeadingNumber(Left(cboFpago.Text(), 2)); }

void FrmTpv1::EndWithInvoice() {
  constexpr double kLargeChange = 500;
  if (DoubtfulPaymentIsStored()) return EndWithStoredPayment();
  if (!CheckPayment() || !ConfirmChange(kLargeChange) || !CheckNotInvoiced() || !CheckBuyer()) return;
  const auto customer = CustomerByCode(context(), Int32OrZero(Text1[2].text));
  if (!customer || !CheckPaymentMethod(*customer)) return;
  const InvoiceParameters asked =
      AskForInvoice(context(), (*customer)["cli_FavObs"].TextOr(""), !on_credit_);
  if (!asked.confirmed) return;
  Issue(InvoiceOf(*customer, asked));
}

// The payment is stored with its invoice, or without when there will be none: what
// the customer handed over is in the till either way.
void FrmTpv1::Issue(const TicketInvoice& invoice) {
  const auto invoicing = CreateInvoicing(context());
  const ui::WaitCursor waiting(*this);
  OpenDrawer(context());
  bool invoiced = false;
  const bool stored = Stored([&] {
    invoiced = StoreInvoice(context(), *invoicing, invoice);
    if (invoiced) return;
    Refuse(kInvoiceFailed, nullptr, Icon::Critical);
    StorePayment();
  });
  if (!stored) return;
  if (invoiced) invoice_ = InvoiceReference(*invoicing);
  Complete();
  if (!invoiced) return;
  const IssuedInvoice issued = IssueInvoice(*invoicing);
  if (!issued.error.empty()) return Refuse(issued.error, nullptr, Icon::Critical);
  // From a printer it comes out before the customer's eyes.
  if (!issued.file.empty()) context().ports.ui.Notify({PaperNotice(invoice_, issued), {}});
}

// It was taken although the store did not say so; with an invoice if there is one.
void FrmTpv1::EndWithStoredPayment() {
  Refuse("El cobro de la venta quedó grabado", nullptr);
  Complete();
}

// A period's invoice may have taken this sale in from another till meanwhile.
bool FrmTpv1::CheckNotInvoiced() {
  const auto sale = Database().Execute("SELECT Cav_Situa FROM Cav WHERE Cav_Id = " +
                                       sql::Number(std::int64_t{context().IdAlbaran}));
  const auto invoiced = static_cast<std::int32_t>(InvoicingState::Invoiced);
  if (sale->Eof() || sale->Field(0).IntOr(0) != invoiced) return true;
  Refuse(kSaleInvoiced, nullptr, Icon::Critical);
  return false;
}

// Whether a record can name him, in a shop that makes records.
bool FrmTpv1::CheckBuyer() {
  const std::string refusal =
      fiscal::InvoiceRefusal(fiscal::DeskOf(context()), {Text1[5].text, Text1[24].text});
  if (!refusal.empty()) Refuse(refusal, &Text1[24], Icon::Exclamation);
  return refusal.empty();
}

bool FrmTpv1::CheckPaymentMethod(const CustomerRecord& customer) {
  constexpr int kNeedsCustomerAccount = 2;
  constexpr int kNeedsOwnBank = 4;
  constexpr std::size_t kAccountLength = 20;
  const bool has_account = Length(customer["Cli_Cta"].TextOr("")) >= kAccountLength;
  const bool has_bank = customer["cli_ban"].IntOr(0) != 0;
  const char* refusal = nullptr;
  const auto lines = Database().Execute("SELECT * FROM Fcol WHERE Fcol_id = " +
                                        sql::Number(std::int64_t{PaymentMethod()}));
  for (; !lines->Eof() && refusal == nullptr; lines->MoveNext()) {
    const std::int32_t mode = lines->Field("Fcol_Mod").IntOr(0);
    if (mode == kNeedsCustomerAccount && !has_account) {
      refusal = "La cuenta de cobro del cliente no es correcta. No puede facturar este cliente";
    } else if (mode == kNeedsOwnBank && !has_bank) {
      refusal =
          "Cuenta de banco propio no asignada en la ficha de cliente.\r\n"
          "No puede facturar este cliente";
    }
  }
  if (refusal != nullptr) Refuse(refusal, nullptr, Icon::Critical);
  return refusal == nullptr;
}

TicketInvoice FrmTpv1::InvoiceOf(const CustomerRecord& customer,
                                 const InvoiceParameters& asked) {
  TicketInvoice invoice;
  invoice.series = asked.series;
  invoice.date = asked.date;
  invoice.customer_id = customer.Id();
  invoice.customer_code = Text1[2].text;
  invoice.customer_name = Text1[5].text;
  invoice.document = Text1[24].text;
  invoice.payment_method = PaymentMethod();
  invoice.observations = asked.observations;
  invoice.address = {Left(cboTipoVia.Text(), 2), Text1[14].text, Variant(Text1[4].text),
                     Text1[9].text,  Text1[1].text, Text1[11].text, Text1[12].text,
                     Left(cboPais.Text(), 3), Text1[13].text, Left(cboProvincias.Text(), 2)};
  invoice.collected = invoice.in_portfolio = !asked.in_portfolio;
  invoice.tickets = " WHERE Cav_Id = " + sql::Number(std::int64_t{context().IdAlbaran});
  invoice.precondition = [this] { RequireOwnSale(context()); };
  invoice.before_marking = [this] { msActualizaClienteAlbaran(); };
  invoice.companion = [this] { RecordPayment(); };
  return invoice;
}

}  // namespace tpv
