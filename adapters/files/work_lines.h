// Work that the operator does not wait for: what goes to one printer or device is done
// in its order by a thread of its own.
#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <thread>

#include "adapters/files/deadline.h"

namespace tpv {

// Used from one thread; the jobs run in others.
class WorkLines {
 public:
  // Keeps to its deadline and throws nothing.
  using Job = std::function<void(const Deadline&)>;

  explicit WorkLines(std::chrono::milliseconds patience = kPaperPatience) : patience_(patience) {}
  ~WorkLines() { Finish(); }
  WorkLines(const WorkLines&) = delete;
  WorkLines& operator=(const WorkLines&) = delete;

  void Add(const std::string& line, Job job);
  // Returns when all jobs have run. Those still waiting when the patience is over run
  // with a deadline that has passed. Lines can be filled again afterwards.
  void Finish();

 private:
  struct Line {
    std::deque<Job> jobs;
    std::thread thread;
  };
  void Work(Line& line);

  const std::chrono::milliseconds patience_;
  std::mutex mutex_;
  std::condition_variable changed_;
  std::map<std::string, Line> lines_;
  std::optional<Deadline> finish_by_;
};

}  // namespace tpv
