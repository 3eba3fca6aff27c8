#include "cash/cash_count_paper.h"

#include <memory>
#include <string>

#include "base/text.h"
#include "cash/cash_count.h"
#include "context/context.h"
#include "output/ticket_text.h"
#include "platform/clock.h"
#include "platform/printer.h"

namespace tpv {

void PrintCashCount(Context& context, std::int32_t closure_id, const CashCount& count) {
  const std::string title = "Arqueo del cierre Nº " + std::to_string(closure_id);
  const std::unique_ptr<PrintDocument> document = context.ports.printers.Begin(title);
  const auto line = [&document](const std::string& text) {
    PrintTextLine(*document, text);
    CloseGap(*document);
  };
  document->SetFont("Courier New", 10, true);
  document->SetY(0);
  line(context.Parameter("Par_Nombre").TextOr(""));
  document->SetFont("Courier New", 9, false);
  line(title);
  line("Impreso. " + ToDayFirstSeconds(context.ports.clock.Now()));
  for (std::size_t i = 0; i < kDenominations.size(); ++i) {
    if (count.pieces[i] == 0) continue;
    const std::string pieces =
        PadLeft(std::to_string(count.pieces[i]), 6) + " x " + PadLeft(DenominationText(i), 6);
    line(DescriptionAndAmount(pieces,
                              static_cast<double>(kDenominations[i] * count.pieces[i]) / 100));
  }
  line(DescriptionAndAmount("Contado...............", count.Counted()));
  line(DescriptionAndAmount("Esperado..............", count.expected));
  line(DescriptionAndAmount("Diferencia............", count.Difference()));
  document->End();
}

}  // namespace tpv
