// Many values in one statement.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace tpv::office {

// "'a', 'b', 'b', 'b'": the last one fills the list up to a length that is always the
// same, so that the statement is too. Some value is there.
std::string TextList(const std::vector<std::string>& values);
std::string NumberList(const std::vector<std::int64_t>& values);

// Gathers rows for one INSERT of them all.
class RowList {
 public:
  explicit RowList(std::string head) : text_(std::move(head)) {}
  void Add(const std::string& values) {
    text_ += (count_++ == 0 ? " VALUES (" : ", (") + values + ")";
  }
  bool empty() const { return count_ == 0; }
  const std::string& text() const { return text_; }

 private:
  std::string text_;
  int count_ = 0;
};

}  // namespace tpv::office
