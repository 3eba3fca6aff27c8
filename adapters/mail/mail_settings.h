// How this till sends mail, from the user's settings (docs/paper.md).
#pragma once

#include <string>

#include "platform/settings.h"

namespace tpv {

enum class MailSecurity {
  Opportunistic,  // encrypted where the server offers it
  StartTls,       // encrypted or not at all, as the next
  Tls,
  None,
};

struct MailSettings {
  std::string server;
  int port = 0;  // 0: what the mail says
  std::string user;
  std::string password;
  std::string from;
  std::string ca_file;  // "" for the machine's own authorities
  MailSecurity security = MailSecurity::Opportunistic;

  // A server and an address to send from.
  bool Usable() const { return !server.empty() && !from.empty(); }
};

// A user without a say in security gets StartTls: a password is not sent in the
// clear by accident. The user is the sender when nothing else is.
MailSettings ReadMailSettings(const Settings& settings);

}  // namespace tpv
