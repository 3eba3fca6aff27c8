#include "adapters/files/work_lines.h"

namespace tpv {

void WorkLines::Add(const std::string& line, Job job) {
  const std::lock_guard lock(mutex_);
  Line& to = lines_[line];
  if (!to.thread.joinable()) to.thread = std::thread([this, &to] { Work(to); });
  to.jobs.push_back(std::move(job));
  changed_.notify_all();
}

void WorkLines::Work(Line& line) {
  std::unique_lock lock(mutex_);
  for (;;) {
    changed_.wait(lock, [&] { return !line.jobs.empty() || finish_by_; });
    if (line.jobs.empty()) return;
    {
      const Job job = std::move(line.jobs.front());
      line.jobs.pop_front();
      const Deadline usual(patience_);
      const Deadline deadline = finish_by_ ? Sooner(*finish_by_, usual) : usual;
      lock.unlock();
      job(deadline);
    }
    lock.lock();
  }
}

void WorkLines::Finish() {
  {
    const std::lock_guard lock(mutex_);
    finish_by_ = Deadline(patience_);
    changed_.notify_all();
  }
  for (auto& [name, line] : lines_) line.thread.join();
  lines_.clear();
  finish_by_.reset();
}

}  // namespace tpv
