#include "invoicing/ticket_invoice.h"

#include "base/text.h"
#include "context/context.h"
#include "data/codes.h"
#include "data/sql_text.h"
#include "data/till_state.h"
#include "fiscal/issuing.h"
#include "platform/database.h"
#include "platform/objects.h"

namespace tpv {

namespace {

class Maker {
 public:
  Maker(Context& context, Object& invoicing, const TicketInvoice& invoice)
      : context_(context), invoicing_(invoicing), invoice_(invoice) {}

  bool Make() {
    PutHead();
    PutAddress();
    const std::int32_t id = invoicing_.Invoke("NuevaFactura").IntOr(0);
    invoicing_.Put("IdFactU", Variant(id));
    if (id == 0) return false;
    invoice_.before_marking();
    if (!MarkTickets(id) || id < 0) return false;
    invoicing_.Invoke("CalculoTotalesFactura");
    if (!invoicing_.Invoke("GrabaFactura").ToBool()) return false;
    if (invoicing_.Get("TotalFactura").NumberOr(0) > 0) ComputeDueDates();
    Record(id);
    return true;
  }

 private:
  void Record(std::int32_t id) {
    try {
      fiscal::RecordInvoice(fiscal::DeskOf(context_),
                            {id, InvoiceReference(invoicing_), invoice_.date,
                             {invoice_.customer_name, invoice_.document}});
    } catch (const fiscal::RecordRefused& refused) {
      throw InvoiceRefused(refused.what());
    }
  }

  void PutHead() {
    invoicing_.Put("SerieFactura", Variant(invoice_.series));
    invoicing_.Put("NumeroFactura", Variant(0));
    invoicing_.Put("FechaFactura", Variant(invoice_.date));
    invoicing_.Put("IdCliente", Variant(invoice_.customer_id));
    invoicing_.Put("CliCod", Variant(invoice_.customer_code));
    invoicing_.Put("CliNom", Variant(invoice_.customer_name));
    invoicing_.Put("CliDoc", Variant(invoice_.document));
    invoicing_.Put("IdFco", Variant(invoice_.payment_method));
    invoicing_.Put("Observaciones", Variant(invoice_.observations));
    invoicing_.Put("PorcentajeDto1", Variant(0));
    invoicing_.Put("PorcentajeDto2", Variant(0));
    constexpr int kFieldByField = -1;
    invoicing_.Put("idDir", Variant(kFieldByField));
  }

  void PutAddress() {
    const InvoiceAddress& address = invoice_.address;
    invoicing_.Put("Sg", Variant(address.street_type));
    invoicing_.Put("Nombre", Variant(address.street));
    invoicing_.Put("Num", address.number);
    invoicing_.Put("Escalera", Variant(address.staircase));
    invoicing_.Put("Piso", Variant(address.floor));
    invoicing_.Put("Puerta", Variant(address.door));
    invoicing_.Put("Cp", Variant(address.post_code));
    invoicing_.Put("Pais", Variant(address.country));
    invoicing_.Put("Poblacion", Variant(address.town));
    invoicing_.Put("Provincia", Variant(address.province));
  }

  bool MarkTickets(std::int32_t invoice_id) {
    Object& update = *context_.MyBd;
    update.Put("Tabla", Variant("Cav"));
    update.Put("BeginTrans", Variant(false));
    const auto columns = update.Get("xlsCampos").ToObject();
    const auto kind = static_cast<std::int32_t>(ValueKind::Whole);
    columns->Invoke("Add", "Cav_Situa", kind, static_cast<std::int32_t>(InvoicingState::Invoiced));
    columns->Invoke("Add", "Cav_IdFactura", kind, invoice_id);
    update.Put("Where", Variant(invoice_.tickets));
    return update.Invoke("Update", "").ToBool();
  }

  void ComputeDueDates() {
    const auto treasury = context_.ports.objects.Create("ZRTESORERIA.ZRTESORE");
    treasury->Put("MyBd", invoicing_.Get("MyBd"));
    treasury->Put("bCobrado", Variant(invoice_.collected));
    treasury->Put("IdFactura", invoicing_.Get("IdFactU"));
    for (const char* same : {"SerieFactura", "NumeroFactura", "FechaFactura", "TotalFactura"}) {
      treasury->Put(same, invoicing_.Get(same));
    }
    treasury->Put("IdFormaCobro", invoicing_.Get("IdFco"));
    treasury->Put("bCartera", Variant(invoice_.in_portfolio));
    PutPaymentTerms(*treasury);
    treasury->Invoke("Calculo_Vtos_Factura");
  }

  void PutPaymentTerms(Object& treasury) {
    const Variant customer = invoicing_.Get("IdCliente");
    const auto terms = context_.Database().Execute(
        "SELECT Cli_Di1,Cli_Di2,Cli_Cta,Ban_ccc,Cli_msp FROM Cli LEFT JOIN BANCOS ON Ban_Id = "
        "Cli_ban WHERE Cli_Id = " + sql::Number(customer.ToInt64()));
    const auto field = [&](const char* name) {
      return terms->Eof() ? Variant() : terms->Field(name);
    };
    treasury.Put("IdCliente", customer);
    treasury.Put("DiasPago1", field("Cli_Di1"));
    treasury.Put("DiasPago2", field("Cli_Di2"));
    treasury.Put("MesSinPago", field("Cli_msp"));
    treasury.Put("CtaCobroCliente", Variant(field("Cli_Cta").TextOr("")));
    treasury.Put("CtaBancoAsignado", Variant(field("Ban_ccc").TextOr("")));
  }

  Context& context_;
  Object& invoicing_;
  const TicketInvoice& invoice_;
};

void Run(const std::function<void()>& companion) {
  try {
    companion();
  } catch (const TillRefusal&) {
    throw;
  } catch (const std::exception& error) {
    throw InvoiceCompanionError(error.what());
  }
}

}  // namespace

InvoiceParameters AskForInvoice(Context& context, const std::string& observations,
                                bool collected) {
  FrmFactuTicket dialog(context);
  dialog.mode = FrmFactuTicket::Mode::InvoiceParameters;
  context.ports.ui.Load(dialog);
  dialog.Text1[7].text = observations;
  dialog.chkRecCar.checked = collected;
  context.ports.ui.ShowModal(dialog);
  return dialog.Invoice();
}

std::shared_ptr<Object> CreateInvoicing(Context& context) {
  auto invoicing = context.ports.objects.Create("ZRFACTUVEN.ZRFACVENTAS");
  invoicing->Put("MyBd", Variant(Variant::ObjectRef(context.MyBd)));
  return invoicing;
}

// Whatever step fails, the operator gets one message for it: the caller's.
bool StoreInvoice(Context& context, Object& invoicing, const TicketInvoice& invoice) {
  try {
    Transaction transaction(context.Database());
    invoice.check();
    Run(invoice.precondition);
    if (!Maker(context, invoicing, invoice).Make()) return false;
    Run(invoice.companion);
    transaction.Commit();
    return true;
  } catch (const InvoiceRefused&) {
    throw;
  } catch (const InvoiceCompanionError&) {
    throw;
  } catch (const TillRefusal&) {
    throw;
  } catch (const CommitUnknown&) {
    throw;
  } catch (const std::exception&) {
    return false;
  }
}

std::string InvoiceReference(Object& invoicing) {
  try {
    const std::string series = Trim(invoicing.Get("SerieFactura").ToText());
    const std::string number = invoicing.Get("NumeroFactura").ToText();
    return series.empty() ? number : series + "/" + number;
  } catch (const std::exception&) {
    return {};  // the invoice is stored; its number only informs
  }
}

// A component that does not say where the paper is has printed it.
IssuedInvoice IssueInvoice(Object& invoicing) {
  constexpr int kOnPaper = 1;
  try {
    invoicing.Put("Tipo_Emision", Variant(kOnPaper));
    return {{}, invoicing.Invoke("EmisionFacturas", 1, true).TextOr("")};
  } catch (const std::exception& error) {
    return {"La factura está grabada pero no se ha podido imprimir. " + std::string(kLineBreak) +
                error.what(),
            {}};
  }
}

std::string PaperNotice(const std::string& reference, const IssuedInvoice& issued) {
  return "La factura " + reference + (issued.file.empty() ? " se ha enviado a la impresora" : " está en " + issued.file);
}

}  // namespace tpv
