#include "fiscal/fingerprint.h"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <stdexcept>
#include <utility>

#include "base/text.h"
#include "platform/digest.h"

namespace tpv::fiscal {

namespace {

constexpr std::array<std::pair<Kind, std::string_view>, 6> kCodes = {{{Kind::Ticket, "F2"},
                                                                      {Kind::Invoice, "F1"},
                                                                      {Kind::InvoiceOfTickets, "F3"},
                                                                      {Kind::Return, "R5"},
                                                                      {Kind::InvoiceOfReturn, "R1"},
                                                                      {Kind::Cancellation, "AN"}}};

void Append(std::string& text, std::string_view name, std::string_view value) {
  if (!text.empty()) text += '&';
  text.append(name).append("=").append(Trim(value));
}

}  // namespace

std::string_view CodeOf(Kind kind) {
  for (const auto& [known, code] : kCodes) {
    if (known == kind) return code;
  }
  throw std::invalid_argument("clase de registro desconocida");
}

Kind KindOf(std::string_view code) {
  for (const auto& [kind, known] : kCodes) {
    if (known == code) return kind;
  }
  throw std::invalid_argument("clase de registro desconocida: «" + std::string(code) + "»");
}

std::string AmountText(Cents cents) {
  char text[32];
  const Cents size = std::abs(cents);
  std::snprintf(text, sizeof text, "%s%lld.%02lld", cents < 0 ? "-" : "", static_cast<long long>(size / 100),
                static_cast<long long>(size % 100));
  return text;
}

std::string DayText(const DateTime& date) { return ReplaceAll(ToDayFirst(date), "/", "-"); }

std::string FingerprintText(const Record& record) {
  const bool cancels = record.kind == Kind::Cancellation;
  const std::string of = cancels ? "FacturaAnulada" : "Factura";
  std::string text;
  text.reserve(320);
  Append(text, "IDEmisor" + of, record.issuer);
  Append(text, "NumSerie" + of, record.document.number);
  Append(text, "FechaExpedicion" + of, DayText(record.document.date));
  if (!cancels) {
    Append(text, "TipoFactura", CodeOf(record.kind));
    Append(text, "CuotaTotal", AmountText(record.tax));
    Append(text, "ImporteTotal", AmountText(record.total));
  }
  Append(text, "Huella", record.previous ? record.previous->fingerprint : "");
  Append(text, "FechaHoraHusoGenRegistro", record.moment);
  return text;
}

void Fingerprint(Record& record, const Digest& digest) {
  record.text = FingerprintText(record);
  record.fingerprint = digest.Sha256(record.text);
}

}  // namespace tpv::fiscal
