#include "adapters/fiscal/message.h"

#include <cstdio>

#include "adapters/fiscal/xml_writer.h"
#include "base/text.h"
#include "fiscal/fingerprint.h"

namespace tpv::fiscal {

namespace {

constexpr const char* kSchemas =
    "https://www2.agenciatributaria.gob.es/static_files/common/internet/dep/aplicaciones/es/aeat/tike/cont/ws/";
constexpr std::size_t kLongestName = 120;
constexpr std::size_t kLongestInstallation = 100;

std::string Percent(double rate) {
  char text[32];
  std::snprintf(text, sizeof text, "%.2f", rate);
  return text;
}

class Message {
 public:
  Message(std::span<const Record> records, bool outage) : records_(records), outage_(outage) {}

  std::string Body() {
    WriteBody();
    return xml_.Finish();
  }
  std::string Soap() {
    xml_.Open("soapenv:Envelope");
    xml_.Attribute("xmlns:soapenv", "http://schemas.xmlsoap.org/soap/envelope/");
    xml_.Open("soapenv:Body");
    WriteBody();
    xml_.Close();
    xml_.Close();
    return xml_.Finish();
  }

 private:
  void WriteBody() {
    xml_.Open("sfLR:RegFactuSistemaFacturacion");
    xml_.Attribute("xmlns:sfLR", std::string(kSchemas) + "SuministroLR.xsd");
    xml_.Attribute("xmlns:sf", std::string(kSchemas) + "SuministroInformacion.xsd");
    WriteHead(records_.front());
    for (const Record& record : records_) {
      xml_.Open("sfLR:RegistroFactura");
      record.kind == Kind::Cancellation ? WriteCancellation(record) : WriteRegistration(record);
      xml_.Close();
    }
    xml_.Close();
  }

  void WriteHead(const Record& record) {
    xml_.Open("sfLR:Cabecera");
    xml_.Open("sf:ObligadoEmision");
    WritePerson(record.issuer_name, record.issuer);
    xml_.Close();
    if (outage_) {
      xml_.Open("sf:RemisionVoluntaria");
      xml_.Element("sf:Incidencia", "S");
      xml_.Close();
    }
    xml_.Close();
  }

  void WritePerson(const std::string& name, const std::string& document) {
    xml_.Element("sf:NombreRazon", Left(name, kLongestName));
    xml_.Element("sf:NIF", document);
  }

  void WriteRegistration(const Record& record) {
    xml_.Open("sf:RegistroAlta");
    xml_.Element("sf:IDVersion", "1.0");
    WriteId("sf:IDFactura", record.issuer, record.document);
    xml_.Element("sf:NombreRazonEmisor", Left(record.issuer_name, kLongestName));
    if (record.mends) xml_.Element("sf:Subsanacion", "S");
    if (record.refused != Refused::No) {
      xml_.Element("sf:RechazoPrevio", std::string(1, static_cast<char>(record.refused)));
    }
    xml_.Element("sf:TipoFactura", std::string(CodeOf(record.kind)));
    if (Rectifies(record.kind)) {
      xml_.Element("sf:TipoRectificativa", "I");
      WriteRelated(record, "sf:FacturasRectificadas", "sf:IDFacturaRectificada");
    }
    if (record.kind == Kind::InvoiceOfTickets) {
      WriteRelated(record, "sf:FacturasSustituidas", "sf:IDFacturaSustituida");
    }
    xml_.Element("sf:DescripcionOperacion",
                 Rectifies(record.kind) ? "Devolución de artículos" : "Venta de artículos");
    WriteBuyer(record);
    xml_.Open("sf:Desglose");
    for (const RateAmounts& amounts : record.rates) WriteRate(amounts);
    xml_.Close();
    xml_.Element("sf:CuotaTotal", AmountText(record.tax));
    xml_.Element("sf:ImporteTotal", AmountText(record.total));
    WriteMaking(record);
    xml_.Close();
  }

  void WriteCancellation(const Record& record) {
    xml_.Open("sf:RegistroAnulacion");
    xml_.Element("sf:IDVersion", "1.0");
    xml_.Open("sf:IDFactura");
    xml_.Element("sf:IDEmisorFacturaAnulada", record.issuer);
    xml_.Element("sf:NumSerieFacturaAnulada", record.document.number);
    xml_.Element("sf:FechaExpedicionFacturaAnulada", DayText(record.document.date));
    xml_.Close();
    if (record.refused == Refused::AndNeverHeld) xml_.Element("sf:SinRegistroPrevio", "S");
    if (record.refused == Refused::Before) xml_.Element("sf:RechazoPrevio", "S");
    WriteMaking(record);
    xml_.Close();
  }

  void WriteId(const char* name, const std::string& issuer, const DocumentId& document) {
    xml_.Open(name);
    WriteKey(issuer, document);
    xml_.Close();
  }

  void WriteKey(const std::string& issuer, const DocumentId& document) {
    xml_.Element("sf:IDEmisorFactura", issuer);
    xml_.Element("sf:NumSerieFactura", document.number);
    xml_.Element("sf:FechaExpedicionFactura", DayText(document.date));
  }

  void WriteRelated(const Record& record, const char* list, const char* one) {
    if (record.related.empty()) return;
    xml_.Open(list);
    for (const DocumentId& document : record.related) WriteId(one, record.issuer, document);
    xml_.Close();
  }

  // A ticket names nobody.
  void WriteBuyer(const Record& record) {
    if (!NamesBuyer(record.kind)) return;
    xml_.Open("sf:Destinatarios");
    xml_.Open("sf:IDDestinatario");
    WritePerson(record.buyer_name, record.buyer_document);
    xml_.Close();
    xml_.Close();
  }

  void WriteRate(const RateAmounts& amounts) {
    const bool surcharged = amounts.surcharge != 0;
    xml_.Open("sf:DetalleDesglose");
    xml_.Element("sf:Impuesto", "01");
    xml_.Element("sf:ClaveRegimen", surcharged ? "18" : "01");
    xml_.Element("sf:CalificacionOperacion", "S1");
    xml_.Element("sf:TipoImpositivo", Percent(amounts.rate));
    xml_.Element("sf:BaseImponibleOimporteNoSujeto", AmountText(amounts.base));
    xml_.Element("sf:CuotaRepercutida", AmountText(amounts.tax));
    if (surcharged) {
      xml_.Element("sf:TipoRecargoEquivalencia", Percent(amounts.surcharge));
      xml_.Element("sf:CuotaRecargoEquivalencia", AmountText(amounts.surcharge_tax));
    }
    xml_.Close();
  }

  // Its place in the chain, the program, the moment and the fingerprint: how all records end.
  void WriteMaking(const Record& record) {
    xml_.Open("sf:Encadenamiento");
    if (record.previous) {
      xml_.Open("sf:RegistroAnterior");
      WriteKey(record.previous->issuer, record.previous->document);
      xml_.Element("sf:Huella", record.previous->fingerprint);
      xml_.Close();
    } else {
      xml_.Element("sf:PrimerRegistro", "S");
    }
    xml_.Close();
    WriteProgram(record.producer);
    xml_.Element("sf:FechaHoraHusoGenRegistro", record.moment);
    xml_.Element("sf:TipoHuella", "01");
    xml_.Element("sf:Huella", record.fingerprint);
  }

  void WriteProgram(const Producer& producer) {
    xml_.Open("sf:SistemaInformatico");
    WritePerson(producer.name, producer.document);
    xml_.Element("sf:NombreSistemaInformatico", std::string(kSystemName));
    xml_.Element("sf:IdSistemaInformatico", std::string(kSystemId));
    xml_.Element("sf:Version", producer.version);
    xml_.Element("sf:NumeroInstalacion", Left(producer.installation, kLongestInstallation));
    xml_.Element("sf:TipoUsoPosibleSoloVerifactu", "S");
    xml_.Element("sf:TipoUsoPosibleMultiOT", "N");
    xml_.Element("sf:IndicadorMultiplesOT", "N");
    xml_.Close();
  }

  std::span<const Record> records_;
  const bool outage_;
  XmlWriter xml_;
};

}  // namespace

std::string MessageBody(std::span<const Record> records, bool outage) { return Message(records, outage).Body(); }

std::string SoapMessage(std::span<const Record> records, bool outage) { return Message(records, outage).Soap(); }

}  // namespace tpv::fiscal
