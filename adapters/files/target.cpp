#include "adapters/files/target.h"

#include "adapters/files/channel.h"
#include "platform/printer.h"

namespace tpv {

std::string SendToTarget(const std::string& target, std::string_view title,
                         std::string_view bytes, const Deadline& deadline) {
  const std::string name = QueueOf(target);
  if (name.empty()) {
    SendBytes(target, bytes, deadline);
    return {};
  }
  const SystemQueue queue = AwaitQueue(name, deadline);
  RefuseToWait(queue, title);
  SendToQueue(name, title, {"raw"}, bytes, deadline);
  return queue.trouble;
}

void RefuseToWait(const SystemQueue& queue, std::string_view title) {
  if (queue.trouble.empty() || !title.empty()) return;
  throw PrintError("La impresora de la cola «" + queue.name + "» " + queue.trouble);
}

}  // namespace tpv
