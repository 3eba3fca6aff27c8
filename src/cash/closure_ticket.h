// The 32-column ticket of one closure: balances, what was paid out, what was
// sold.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace tpv {

struct Context;
class Recordset;

class ClosureTicket {
 public:
  ClosureTicket(Context& context, std::int32_t closure_id);

  // Reads the closure and its breakdowns. What was composed before an error
  // stays in Text(). Throws DatabaseError, also for a closure that is not there.
  void Compose();
  // On the current printer, as one document. Throws PrintError.
  void Print() const;
  // Every line with its line end: the body of the e-mail.
  std::string Text() const;

 private:
  void ComposeBalances(const Recordset& closure);
  void ComposePayments();
  void ComposeSales();
  void Banner(const char* title);
  void EventHeader(const std::string& number, const Recordset& row);
  void Line(const std::string& text);
  void AmountLine(const char* label, double euros);

  Context& context_;
  std::string id_;
  std::vector<std::string> lines_;
};

}  // namespace tpv
