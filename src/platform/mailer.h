// Outgoing mail.
#pragma once

#include <string>

namespace tpv {

struct Mail {
  int port = 25;  // what the settings say goes before it
  std::string to;
  std::string from_name;
  std::string subject;  // UTF-8, as the body
  std::string body;
};

class Mailer {
 public:
  virtual ~Mailer() = default;
  // Whether there are settings to send with.
  virtual bool Configured() const = 0;
  // "" when the server took the mail, else why not. Returns within seconds even
  // when the server never answers; never throws.
  virtual std::string Send(const Mail& mail) = 0;
};

}  // namespace tpv
