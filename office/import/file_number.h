// Numbers as a spreadsheet wrote them, whatever its country.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tpv::office {

// Which mark stands before the decimals, as far as a file's numbers tell.
class DecimalMark {
 public:
  // Learns from one number more.
  void Learn(std::string_view text);

  // Reads a number with or without grouping, blanks and "€" or "%" around it; its
  // absolute value is below a thousand million. Nullopt with the reason when it is none,
  // or when the file leaves open whether "1.234" is a thousand or one.
  std::optional<double> Read(std::string_view text, std::string& reason) const;

 private:
  bool comma_ = false;
  bool point_ = false;
};

}  // namespace tpv::office
