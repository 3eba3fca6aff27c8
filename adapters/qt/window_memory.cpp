#include "adapters/qt/window_memory.h"

#include <stdexcept>

#include "base/number_text.h"
#include "base/text.h"

namespace tpv::qt {

namespace {

constexpr const char* kApplication = "TPV";
constexpr const char* kSection = "Windows";

}  // namespace

std::vector<int> WindowMemory::Numbers(const std::string& key) const {
  std::vector<int> numbers;
  if (settings_ == nullptr) return numbers;
  for (const std::string& word : Split(settings_->Read(kApplication, kSection, key), ",")) {
    const auto number = ParseInt32(word);
    if (!number || *number < 1) return {};
    numbers.push_back(*number);
  }
  return numbers;
}

// A size that cannot be kept is no reason to stop a sale.
void WindowMemory::Write(const std::string& key, const std::vector<int>& numbers) {
  if (settings_ == nullptr || Numbers(key) == numbers) return;
  std::string text;
  for (const int number : numbers) text += (text.empty() ? "" : ",") + std::to_string(number);
  try {
    settings_->Write(kApplication, kSection, key, text);
  } catch (const std::runtime_error&) {
    settings_ = nullptr;
  }
}

QSize WindowMemory::SizeOf(const std::string& window) const {
  const std::vector<int> size = Numbers(window);
  return size.size() == 2 ? QSize(size[0], size[1]) : QSize();
}

void WindowMemory::Keep(const std::string& window, const QSize& size) {
  Write(window, {size.width(), size.height()});
}

std::vector<int> WindowMemory::ColumnsOf(const std::string& table) const { return Numbers(table); }

void WindowMemory::Keep(const std::string& table, const std::vector<int>& widths) {
  Write(table, widths);
}

}  // namespace tpv::qt
