#include "screen/unsent_item.h"

#include "context/errands.h"

namespace tpv {

void AddUnsentRecords(const Ports& ports, std::vector<ui::StatusItem>& items) {
  const long overdue = ports.errands == nullptr ? 0 : ports.errands->OverdueRecords();
  if (overdue == 0) return;
  items.push_back({"Agencia", std::to_string(overdue) + " sin enviar", ui::StatusItem::Tone::Missing});
}

}  // namespace tpv
