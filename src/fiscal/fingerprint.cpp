#include "fiscal/fingerprint.h"

#include <array>
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
  constexpr std::size_t kLeast = 3;  // "0.05"
  std::string text = std::to_string(std::abs(cents));
  if (text.size() < kLeast) text.insert(0, kLeast - text.size(), '0');
  text.insert(text.size() - 2, ".");
  return cents < 0 ? "-" + text : text;
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
