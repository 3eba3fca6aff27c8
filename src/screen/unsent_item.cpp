#include "screen/unsent_item.h"

#include "platform/sending_watch.h"

namespace tpv {

void AddUnsentRecords(const Ports& ports, std::vector<ui::StatusItem>& items) {
  const long overdue = ports.sending == nullptr ? 0 : ports.sending->Overdue();
  if (overdue == 0) return;
  items.push_back({"Agencia", std::to_string(overdue) + " sin enviar", ui::StatusItem::Tone::Missing});
}

}  // namespace tpv
