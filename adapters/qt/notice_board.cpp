#include "adapters/qt/notice_board.h"

namespace tpv::qt {

void NoticeBoard::Post(const Notice& notice) {
  {
    const std::lock_guard lock(mutex_);
    notices_.push_back(notice);
  }
  QMetaObject::invokeMethod(&home_, told_, Qt::QueuedConnection);
}

std::string NoticeBoard::Text() const {
  constexpr std::size_t kMost = 3;
  const std::lock_guard lock(mutex_);
  std::string text;
  const std::size_t first = notices_.size() > kMost ? notices_.size() - kMost : 0;
  if (first > 0) text = "Y " + std::to_string(first) + " avisos anteriores.\n";
  for (std::size_t i = first; i < notices_.size(); ++i) text += notices_[i].text + "\n";
  if (!text.empty()) text.pop_back();
  return text;
}

void NoticeBoard::Clear() {
  const std::lock_guard lock(mutex_);
  notices_.clear();
}

}  // namespace tpv::qt
