// The day's commonest work: sales of ten lines.
#pragma once

#include <string>

#include "base/mask.h"
#include "bench/harness.h"

namespace tpv::bench {

// Scans ten lines a sale, then starts the next one; which article changes.
template <typename Seller>
class TenLineSales {
 public:
  TenLineSales(Seller& seller, int articles) : seller_(seller), articles_(articles) {}

  void Prepare() {
    if (lines_ % 10 == 0) {
      if (lines_ > 0) seller_.Finish();
      seller_.StartSale();
    }
    code_ = FormatNumber(1 + (++lines_ * 7919) % articles_, "0000");
  }
  void Scan() { seller_.Scan(code_); }
  void Finish() { seller_.Finish(); }
  // Finishes the sale that is open.
  void End() {
    Finish();
    lines_ = 0;
  }

  Work Scanning() {
    return {[this] { Prepare(); }, [this] { Scan(); }};
  }
  Work Finishing() {
    return {[this] {
              lines_ = 0;
              for (int line = 0; line < 10; ++line) {
                Prepare();
                Scan();
              }
            },
            [this] { End(); }};
  }

 private:
  Seller& seller_;
  int articles_;
  int lines_ = 0;
  std::string code_;
};

}  // namespace tpv::bench
