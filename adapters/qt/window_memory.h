// The sizes of windows and the widths of columns that the operator gave them,
// kept in the machine's settings from one day to the next.
#pragma once

#include <QSize>
#include <string>
#include <vector>

#include "platform/settings.h"

namespace tpv::qt {

class WindowMemory {
 public:
  // Without settings nothing is remembered. They outlive the memory.
  void Use(Settings& settings) { settings_ = &settings; }

  // An empty size when the operator never changed this window's.
  QSize SizeOf(const std::string& window) const;
  void Keep(const std::string& window, const QSize& size);
  // Empty when the operator never changed the widths of this table.
  std::vector<int> ColumnsOf(const std::string& table) const;
  void Keep(const std::string& table, const std::vector<int>& widths);

 private:
  std::vector<int> Numbers(const std::string& key) const;
  void Write(const std::string& key, const std::vector<int>& numbers);

  Settings* settings_ = nullptr;
};

}  // namespace tpv::qt
