// What waits for the tax agency, as known beside the windows.
#pragma once

namespace tpv {

class SendingWatch {
 public:
  virtual ~SendingWatch() = default;
  // Invoice records that were not sent within ten minutes, as last counted. Answers at
  // once, in any thread.
  virtual long Overdue() const = 0;
};

}  // namespace tpv
