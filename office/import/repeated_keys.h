// Which keys a file holds more than once, with eight bytes of memory a key.
#pragma once

#include <cstdint>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace tpv::office {

// As the store compares codes: whatever their case and the blanks behind them.
std::string FoldKey(const std::string& key);

class RepeatedKeys {
 public:
  // All keys first.
  void Note(const std::string& folded);
  void Close();
  // Then row by row: the line where the key stood before, 0 for none.
  long Before(const std::string& folded, long line);

 private:
  std::vector<std::uint64_t> prints_;
  std::unordered_set<std::uint64_t> suspects_;
  std::unordered_map<std::string, long> seen_;  // of the suspects
};

}  // namespace tpv::office
