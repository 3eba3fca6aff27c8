// The outbox of this machine's printers: what they are given is in it until it is printed.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "adapters/files/outbox_folder.h"
#include "adapters/files/paper_document.h"
#include "platform/clock.h"

namespace tpv {

class ShopOutbox : public PrintOutbox {
 public:
  // Null in place of what could not be kept.
  using Held = std::shared_ptr<HeldPaper>;
  using HandOver = std::function<void(const std::string& printer, PaperDocument document, Held held)>;

  // All outlive the outbox.
  ShopOutbox(const Clock& clock, const CodeEncoder& codes, HandOver hand_over)
      : clock_(clock), codes_(codes), hand_over_(std::move(hand_over)) {}

  // A document without a title is missed by nobody, and not kept.
  Held Keep(const std::string& printer, const PaperDocument& document) const;

  std::vector<UnprintedDocument> List() const override;
  void Print(const std::string& id, std::string_view printer) override;
  void Forget(const std::string& id) override;

 private:
  const Clock& clock_;
  const CodeEncoder& codes_;
  const HandOver hand_over_;
};

}  // namespace tpv
