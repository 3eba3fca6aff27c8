// When an invoice falls due and in what parts: the payment method's lines, moved
// to the customer's payment days and out of the month in which nothing is paid.
#pragma once

#include <vector>

#include "base/date_time.h"

namespace tpv::suite {

struct PaymentLine {
  int days = 0;       // after the invoice's date
  double share = 0;   // percent; lines without a share divide the rest equally
  int mode = 0;       // Fcol_Mod
};

struct PaymentTerms {
  int day1 = 0;  // days of the month, 0 for none
  int day2 = 0;
  int month_without = 0;  // 1 to 12, 0 for none
};

struct DueDate {
  DateTime date;
  double amount = 0;  // euros
  int mode = 0;
};

// The parts add up to the total to the cent. Without lines there is one part, due
// at once.
std::vector<DueDate> DueDates(const DateTime& invoiced, double total,
                              std::vector<PaymentLine> lines, const PaymentTerms& terms);

}  // namespace tpv::suite
