#include "adapters/files/queue_watch.h"

#include "platform/printer.h"

namespace tpv {

namespace {
constexpr std::chrono::milliseconds kGlance{1000};
constexpr const char* kLine = "(colas)";  // no printer's name
}  // namespace

void QueueWatch::Ask(State& state, const Deadline& deadline) {
  View view;
  try {
    view.queues = AskForQueues(deadline);
    view.answered = true;
  } catch (const PrintError& error) {
    view.trouble = error.what();
    view.detail = error.detail();
  }
  const std::lock_guard lock(state.mutex);
  if (!view.answered) {
    view.queues = state.view.queues;
    view.answered = state.view.answered;
  }
  state.view = view;
  state.asking = false;
  state.changed.notify_all();
}

QueueWatch::View QueueWatch::Look() {
  std::unique_lock lock(state_->mutex);
  if (!state_->asking) {
    state_->asking = true;
    lines_.Add(kLine, [state = state_](const Deadline& deadline) { Ask(*state, deadline); });
  }
  const bool came = state_->changed.wait_for(lock, kGlance, [&] { return !state_->asking; });
  View view = state_->view;
  if (!came) view.trouble = "El sistema de impresión no responde";
  return view;
}

}  // namespace tpv
