// Outgoing mail.
#pragma once

#include <string>
#include <string_view>

namespace tpv {

// How the reason begins when the whole mail was handed over and no answer came: the
// server may have taken it.
inline constexpr std::string_view kMayHaveArrived = "Puede que haya llegado";

struct Mail {
  int port = 25;  // what the settings say goes before it
  std::string to;
  std::string from_name;
  std::string subject;  // UTF-8, as the body
  std::string body;
};

struct MailResult {
  bool sent = false;
  std::string text;  // why not; when sent, which of several recipients did not get it
};

class Mailer {
 public:
  virtual ~Mailer() = default;
  // Whether there are settings to send with.
  virtual bool Configured() const = 0;
  // Returns within eight seconds however the server behaves; never throws.
  virtual MailResult Send(const Mail& mail) = 0;
};

}  // namespace tpv
