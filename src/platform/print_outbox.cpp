#include "platform/print_outbox.h"

#include "platform/printer.h"

namespace tpv {

std::size_t CountUnprinted(const PrintOutbox* outbox) {
  try {
    return outbox == nullptr ? 0 : outbox->List().size();
  } catch (const PrintError&) {
    return 0;
  }
}

}  // namespace tpv
