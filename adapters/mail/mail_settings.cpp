#include "adapters/mail/mail_settings.h"

#include "base/number_text.h"
#include "base/text.h"

namespace tpv {

namespace {

MailSecurity SecurityOf(std::string_view text, bool has_user) {
  if (EqualNoCase(text, "none")) return MailSecurity::None;
  if (EqualNoCase(text, "tls")) return MailSecurity::Tls;
  const bool plain = text.empty() && !has_user;
  return plain ? MailSecurity::Opportunistic : MailSecurity::StartTls;
}

// "smtp.tienda.es:587", as people write it.
void SplitOffPort(MailSettings& mail) {
  const std::size_t colon = mail.server.find(':');
  if (colon == std::string::npos || mail.server.find(':', colon + 1) != std::string::npos) return;
  if (mail.port == 0) mail.port = Int32OrZero(mail.server.substr(colon + 1));
  mail.server.resize(colon);
}

}  // namespace

MailSettings ReadMailSettings(const Settings& settings) {
  const auto read = [&](std::string_view key) { return settings.Read("TPV", "Mail", key); };
  MailSettings mail;
  mail.server = Trim(read("Server"));
  mail.port = Int32OrZero(read("Port"));
  SplitOffPort(mail);
  mail.user = read("User");
  mail.password = read("Password");
  mail.from = Trim(read("From"));
  if (mail.from.empty() && mail.user.find('@') != std::string::npos) mail.from = mail.user;
  mail.ca_file = read("CaFile");
  mail.security = SecurityOf(Trim(read("Security")), !mail.user.empty());
  return mail;
}

}  // namespace tpv
