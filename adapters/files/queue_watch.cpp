#include "adapters/files/queue_watch.h"

#include <thread>
#include <utility>

#include "platform/printer.h"

namespace tpv {

namespace {
constexpr std::chrono::milliseconds kGlance{1000};
constexpr std::chrono::milliseconds kAgain{250};
constexpr const char* kWatchLine = "(colas)";  // no printer's name
}  // namespace

SystemQueues QueueWatch::AskOnce(State& state, const Deadline& deadline) {
  try {
    SystemQueues queues = AskForQueues(deadline);
    const std::lock_guard lock(state.mutex);
    state.known = true;
    return queues;
  } catch (const PrintError&) {
    const std::lock_guard lock(state.mutex);
    if (!state.starting) state.starting = Deadline(kPaperPatience);
    throw;
  }
}

SystemQueues QueueWatch::Await(const Deadline& deadline) const {
  for (;;) {
    try {
      return AskOnce(*state_, deadline);
    } catch (const PrintError&) {
      const std::lock_guard lock(state_->mutex);
      const Deadline until = state_->known ? deadline : Sooner(*state_->starting, deadline);
      if (until.Left() <= kAgain) throw;
    }
    std::this_thread::sleep_for(kAgain);
  }
}

void QueueWatch::Ask(State& state, const Deadline& deadline) {
  View view;
  try {
    view.queues = AskOnce(state, deadline);
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

void QueueWatch::Begin() {
  const std::lock_guard lock(state_->mutex);
  if (std::exchange(state_->asking, true)) return;
  lines_.Add(kWatchLine, [state = state_](const Deadline& deadline) { Ask(*state, deadline); });
}

QueueWatch::View QueueWatch::Look() {
  Begin();
  std::unique_lock lock(state_->mutex);
  const bool came = state_->changed.wait_for(lock, kGlance, [&] { return !state_->asking; });
  View view = state_->view;
  if (!came) view.trouble = "El sistema de impresión no responde";
  return view;
}

}  // namespace tpv
