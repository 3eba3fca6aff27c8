#include "screen/waiting_items.h"

#include "context/errands.h"
#include "platform/print_outbox.h"
#include "platform/printer.h"

namespace tpv {

void AddWaiting(const Ports& ports, std::vector<ui::StatusItem>& items) {
  using Tone = ui::StatusItem::Tone;
  const long overdue = ports.errands == nullptr ? 0 : ports.errands->OverdueRecords();
  if (overdue > 0) items.push_back({"Agencia", std::to_string(overdue) + " sin enviar", Tone::Missing});
  const std::size_t unprinted = CountUnprinted(ports.printers.Outbox());
  if (unprinted == 0) return;
  items.push_back({"Papel (F8)", std::to_string(unprinted) + " sin imprimir", Tone::Missing, false, ui::Key::F8});
}

}  // namespace tpv
