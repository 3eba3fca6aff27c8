// One invoice for one or many tickets: made, stored, given due dates and issued by
// the suite's invoicing and treasury components, all in one transaction with the
// marks on the tickets.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>

#include "base/variant.h"
#include "cash/ticket_dialog.h"

namespace tpv {

struct Context;
class Object;

// Asks the operator for series, date and observations.
InvoiceParameters AskForInvoice(Context& context, const std::string& observations,
                                bool collected);

struct InvoiceAddress {
  std::string street_type;
  std::string street;
  Variant number;
  std::string staircase;
  std::string floor;
  std::string door;
  std::string post_code;
  std::string country;
  std::string town;
  std::string province;
};

struct TicketInvoice {
  std::string series;
  std::string date;  // dd/mm/yyyy
  std::int32_t customer_id = 0;
  std::string customer_code;
  std::string customer_name;
  std::string document;
  std::int32_t payment_method = 0;
  std::string observations;
  InvoiceAddress address;
  bool collected = false;     // due dates are stored as collected
  bool in_portfolio = false;
  std::string tickets;        // " WHERE …": the tickets that it invoices
  // Runs first inside the transaction; an InvoiceRefused of it goes to the caller of
  // StoreInvoice, and nothing is stored.
  std::function<void()> check = [] {};
  // Whether what it invoices is still as the operator saw it; runs first, inside the
  // transaction. An error goes to the caller as the companion's does.
  std::function<void()> precondition = [] {};
  // Runs once the invoice has its number, before the tickets are marked.
  std::function<void()> before_marking = [] {};
  // Stores what must stand or fall with the invoice. An error of it goes to the
  // caller of StoreInvoice as InvoiceCompanionError; nothing is stored then.
  std::function<void()> companion = [] {};
};

class InvoiceCompanionError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// The tickets are not what the operator has seen of them, or the invoice has no record.
// what() is for him.
class InvoiceRefused : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// The suite's invoicing component, with the database.
std::shared_ptr<Object> CreateInvoicing(Context& context);

// Everything or nothing, also when it is given up; false when any step failed. Throws InvoiceRefused,
// InvoiceCompanionError and the companion's TillRefusal, and CommitUnknown when the
// store did not answer whether it is there.
bool StoreInvoice(Context& context, Object& invoicing, const TicketInvoice& invoice);

// Series, "/" and number of the invoice that the component holds; "" when it does not say.
std::string InvoiceReference(Object& invoicing);

struct IssuedInvoice {
  std::string error;  // what the operator must be told; the invoice stands all the same
  std::string file;   // where its paper lies; "" when it went to a printer
};

// Prints the stored invoice.
IssuedInvoice IssueInvoice(Object& invoicing);
// Where the paper of an invoice went, for the operator.
std::string PaperNotice(const std::string& reference, const IssuedInvoice& issued);

inline constexpr const char* kInvoiceFailed = "Error generando factura, proceso cancelado";

}  // namespace tpv
