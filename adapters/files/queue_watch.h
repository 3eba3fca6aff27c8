// The queues as the printing system last named them, for whoever looks at a list: asked
// anew each time, and not waited for when the answer does not come.
#pragma once

#include <condition_variable>
#include <memory>
#include <mutex>
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
  // Waits a second at most.
  View Look();

 private:
  struct State {
    std::mutex mutex;
    std::condition_variable changed;
    View view;
    bool asking = false;
  };
  static void Ask(State& state, const Deadline& deadline);

  WorkLines& lines_;
  const std::shared_ptr<State> state_ = std::make_shared<State>();
};

}  // namespace tpv
