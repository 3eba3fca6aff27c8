#include "office/refusal.h"

namespace tpv::office {

std::string RefusalText(const Refusal& refusal) {
  std::string text;
  if (refusal.line > 0) text = "Línea " + std::to_string(refusal.line);
  if (!refusal.field.empty()) text += (text.empty() ? "" : ", ") + refusal.field;
  return text.empty() ? refusal.reason : text + ": " + refusal.reason;
}

}  // namespace tpv::office
