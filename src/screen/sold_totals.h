// What the tickets of a period come to, as the lists of tickets show it.
#pragma once

#include <functional>
#include <string>

#include "platform/ui/controls.h"

namespace tpv {

class Connection;
class FormToolkit;

// Euros.
struct SoldTotals {
  double base = 0;
  double taxes = 0;
  double total = 0;
};

// The tax in euros of a line's amount without tax, at a rate in percent.
using LineTax = std::function<double(double amount, double rate)>;

// To the cent as the suite rounds. The toolkit outlives it.
LineTax LineTaxBy(const FormToolkit& toolkit);

// Over all lines of tickets of those days (made by BetweenDays).
SoldTotals ReadSold(Connection& connection, const std::string& days, const LineTax& tax);

// Into boxes 10, 3 and 8.
void ShowSold(ui::TextBoxes& boxes, const SoldTotals& sold);

// The caption of the frame around them; `count` is the number of tickets.
std::string SoldCountCaption(const Variant& count);

}  // namespace tpv
