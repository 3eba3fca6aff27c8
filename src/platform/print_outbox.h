// Documents that a printer did not print, kept until somebody prints or forgets them.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "base/date_time.h"

namespace tpv {

struct UnprintedDocument {
  std::string id;       // the outbox's own
  std::string title;    // what the operator knows it by
  std::string printer;  // it was meant for; "" for the usual one
  DateTime since;
  std::string why;      // "" when nothing was told
  bool maybe_printed = false;  // all of it or a part may lie at the printer
};

class PrintOutbox {
 public:
  virtual ~PrintOutbox() = default;
  // Oldest first, without those that a till is printing now. Throws PrintError.
  virtual std::vector<UnprintedDocument> List() const = 0;
  // To the printer so named, "" for the usual one; comes back when that does not print
  // it. Throws PrintError, also when it is not there any more as it was listed.
  virtual void Print(const std::string& id, std::string_view printer) = 0;
  virtual void Forget(const std::string& id) = 0;
};

// Nothing listed where the outbox cannot be read.
std::size_t CountUnprinted(const PrintOutbox* outbox);

}  // namespace tpv
