#include "output/ticket_text.h"

#include <algorithm>
#include <memory>

#include "base/mask.h"
#include "base/text.h"
#include "context/context.h"
#include "platform/clock.h"
#include "platform/printer.h"

namespace tpv {

std::string Amount9(double euros) { return PadLeft(FormatNumber(euros, "#,##0.00"), 9); }

std::string Description23(std::string_view text) {
  constexpr std::size_t kWidth = 23;
  return PadRight(Left(Composed(OneLine(text)), kWidth), kWidth);
}

std::string DescriptionAndAmount(std::string_view description, double euros) {
  const std::string amount = Amount9(euros);
  const std::size_t room = kTicketWidth - std::min(kTicketWidth, Length(amount));
  return Left(Description23(description), room) + amount;
}

std::string Right32(std::string_view text) {
  return PadLeft(text, kTicketWidth);
}

std::string Centre32(std::string_view text) { return Centre(text, kTicketWidth); }

void PrintTextLine(PrintDocument& document, std::string_view text) {
  document.PrintLine(OneLine(text).append(kLineBreak));
}

void CloseGap(PrintDocument& document) { document.SetY(document.Y() - kLineGap); }

void PrintOpeningLine(Context& context) {
  const std::unique_ptr<PrintDocument> document = context.ports.printers.Begin("");
  document->PrintLine("Apertura " + ToDayFirstSeconds(context.ports.clock.Now()));
  document->End();
}

}  // namespace tpv
