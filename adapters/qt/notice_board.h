// What went wrong behind the operator's back, until the operator has seen it.
#pragma once

#include <QObject>
#include <functional>
#include <mutex>
#include <vector>

#include "platform/notice.h"

namespace tpv::qt {

class NoticeBoard {
 public:
  // `told` runs soon after each notice, in the thread that made the board.
  explicit NoticeBoard(std::function<void()> told) : told_(std::move(told)) {}

  void Post(const Notice& notice);  // from any thread
  // One a line, the oldest first; "" when there is none.
  std::string Text() const;
  void Clear();

 private:
  const std::function<void()> told_;
  QObject home_;  // of the thread that made it
  mutable std::mutex mutex_;
  std::vector<Notice> notices_;
};

}  // namespace tpv::qt
