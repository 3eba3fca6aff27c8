#include "adapters/fiscal/qr_encoder.h"

#include <qrencode.h>

#include <memory>

#include "platform/printer.h"

namespace tpv {

SquareCode QrEncoder::Encode(std::string_view text) const {
  SquareCode code{std::string(text), 0, {}};
  constexpr int kSmallestThatFits = 0;
  const std::unique_ptr<QRcode, decltype(&QRcode_free)> drawn(
      QRcode_encodeString8bit(code.text.c_str(), kSmallestThatFits, QR_ECLEVEL_M), &QRcode_free);
  if (!drawn) throw PrintError("No se puede dibujar el código QR");
  code.side = drawn->width;
  const int modules = code.side * code.side;
  for (int i = 0; i < modules; ++i) code.dark.push_back((drawn->data[i] & 1) != 0);
  return code;
}

}  // namespace tpv
