#include "debt/collection.h"

#include "base/rounding.h"
#include "base/text.h"

namespace tpv {

namespace {

constexpr std::size_t kNoteLength = 100;

double Cents(double euros) { return RoundHalfAway(euros, 2); }

std::string Joined(const std::vector<std::string>& references) {
  std::string text = references.front();
  for (std::size_t i = 1; i < references.size(); ++i) text += ", " + references[i];
  return text;
}

}  // namespace

std::vector<Share> ShareOut(const std::vector<OpenTicket>& tickets, double amount) {
  std::vector<Share> shares;
  double left = Cents(amount);
  for (std::size_t i = 0; i < tickets.size() && left > 0; ++i) {
    const bool settled = tickets[i].pending <= left;
    shares.push_back({i, settled ? tickets[i].pending : left, settled});
    left = Cents(left - shares.back().amount);
  }
  return shares;
}

std::string CollectionNote(std::int32_t customer_code, const std::string& customer,
                           const std::vector<std::string>& references) {
  const std::string note =
      "Cobro de " + std::to_string(customer_code) + " " + Trim(customer) +
      (references.empty() ? " Ventas varias" : " Venta " + Joined(references));
  return Length(note) <= kNoteLength ? note : Left(note, kNoteLength - 3) + "...";
}

}  // namespace tpv
