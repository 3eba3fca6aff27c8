// A record of an invoice, ticket, return or cancellation as the tax agency wants it:
// made with the document, chained to the one before, never changed. Plain values.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/date_time.h"

namespace tpv::fiscal {

// The program as the agency is told of it.
inline constexpr std::string_view kSystemName = "ZRTPVE";  // 30 characters at most
inline constexpr std::string_view kSystemId = "ZR";

// Fis_Modo and the store's setting: whom records are for.
enum class Mode : int { Off = 0, Trial = 1, Real = 2 };

enum class Kind {
  Ticket,            // F2
  Invoice,           // F1
  InvoiceOfTickets,  // F3: of tickets that have records of their own
  Return,            // R5, by difference: what a ticket gives back
  InvoiceOfReturn,   // R1, by difference: the same to a buyer with name and number
  Cancellation,      // of a number that was registered
};
constexpr bool Rectifies(Kind kind) { return kind == Kind::Return || kind == Kind::InvoiceOfReturn; }
constexpr bool NamesBuyer(Kind kind) {
  return kind == Kind::Invoice || kind == Kind::InvoiceOfTickets || kind == Kind::InvoiceOfReturn;
}

// "F2", "F1", "F3", "R5", "R1" as the agency writes them, "AN" for a cancellation.
std::string_view CodeOf(Kind kind);
// Throws std::invalid_argument for another code.
Kind KindOf(std::string_view code);

using Cents = std::int64_t;

struct RateAmounts {
  double rate = 0;       // VAT in percent
  double surcharge = 0;  // equivalence surcharge in percent, 0 for none
  Cents base = 0;
  Cents tax = 0;
  Cents surcharge_tax = 0;

  Cents Total() const { return base + tax + surcharge_tax; }
  bool operator==(const RateAmounts&) const = default;
};

// A ticket or invoice of this shop: series, "/" and number, and its day.
struct DocumentId {
  std::string number;
  DateTime date;

  bool operator==(const DocumentId&) const = default;
};

// The record before in the chain.
struct PreviousRecord {
  std::int32_t position = 0;
  std::string issuer;
  DocumentId document;
  std::string fingerprint;
};

// Who made the program and which copy of it made the record.
struct Producer {
  std::string name;
  std::string document;  // tax number
  std::string version;
  std::string installation;
};

// RechazoPrevio: whether the agency refused an earlier record of the number.
enum class Refused : char { No = 'N', Before = 'S', AndNeverHeld = 'X' };

enum class State : int { Waiting = 0, Accepted = 1, AcceptedWithErrors = 2, Rejected = 3 };

// What the agency said of a record.
struct Reply {
  State state = State::Waiting;
  int code = 0;            // of an error; 0 without
  std::string text;        // of an error
  std::string receipt;     // the agency's number for the message (CSV)
  bool duplicate = false;  // the agency held the record already: `state` is that one's
};

struct Record {
  std::int32_t position = 0;  // in the order of making, from 1
  Mode mode = Mode::Trial;
  Kind kind = Kind::Ticket;
  bool mends = false;  // Subsanacion
  Refused refused = Refused::No;
  std::string issuer;  // tax number
  std::string issuer_name;
  DocumentId document;
  std::string buyer_name;      // "" for none
  std::string buyer_document;
  std::vector<RateAmounts> rates;   // none in a cancellation
  std::vector<DocumentId> related;  // the tickets that an F3 replaces, or what a return takes back
  Cents tax = 0;                    // CuotaTotal, surcharges with it
  Cents total = 0;                  // ImporteTotal
  std::string moment;               // of making: "2026-11-24T10:30:00+01:00"
  std::optional<PreviousRecord> previous;
  std::string text;         // what was fingerprinted, letter for letter
  std::string fingerprint;  // 64 upper-case hexadecimal digits
  std::int32_t ticket = 0;   // Cav_Id; 0 for an invoice
  std::int32_t invoice = 0;  // Fav_Id; 0 for a ticket
  Producer producer;
  Reply reply;
};

}  // namespace tpv::fiscal
