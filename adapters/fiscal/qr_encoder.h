// Square codes by libqrencode.
#pragma once

#include "platform/square_code.h"

namespace tpv {

class QrEncoder : public CodeEncoder {
 public:
  SquareCode Encode(std::string_view text) const override;
};

}  // namespace tpv
