// The queues as the printing system last named them, for whoever looks at a list: asked
// anew each time, and not waited for when the answer does not come.
#pragma once

#include <condition_variable>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

#include "adapters/files/system_queues.h"
#include "adapters/files/work_lines.h"

namespace tpv {

class QueueWatch {
 public:
  // The lines outlive the watch.
  explicit QueueWatch(WorkLines& lines) : lines_(lines) {}

  struct View {
    SystemQueues queues;   // of the last answer, none before it
    bool answered = false;  // whether there was one
    std::string trouble;    // why there was none this time, ""
    std::string detail;
  };
  void Begin();  // to look; nobody waits for it
  // Waits a second at most.
  View Look();
  // Asks until the printing system is there, for it may be starting at this moment; once
  // where it has never answered for longer than that takes. Throws PrintError; any thread's.
  SystemQueues Await(const Deadline& deadline) const;

 private:
  struct State {
    std::mutex mutex;
    std::condition_variable changed;
    View view;
    bool asking = false;
    bool known = false;  // it answered once
    std::optional<Deadline> starting;  // until when it may be, since the first look
  };
  static SystemQueues AskOnce(State& state, const Deadline& deadline);
  static void Ask(State& state, const Deadline& deadline);

  WorkLines& lines_;
  const std::shared_ptr<State> state_ = std::make_shared<State>();
};

}  // namespace tpv
