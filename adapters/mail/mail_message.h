// A mail as it travels: headers and body in the letters that SMTP allows.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "base/date_time.h"
#include "platform/mailer.h"

namespace tpv {

// The recipients of "a@tienda.es; b@tienda.es" (also with commas). Empty when one
// of them is no address: it could be an order to the server.
std::vector<std::string> Addresses(std::string_view text);

// A header's text: as it is when it is short and plain, else as encoded words,
// folded. No text can end the header.
std::string HeaderText(std::string_view utf8);
// The name in front of an address.
std::string HeaderName(std::string_view utf8);

std::string Base64(std::string_view bytes);

// "Tue, 24 Nov 2026 10:30:00 +0100", with the zone that the machine has then.
std::string MailDate(const DateTime& local);

// The whole message, lines ended by CR LF. `from` is an address.
std::string MailMessage(const Mail& mail, const std::string& from,
                        const std::vector<std::string>& recipients, const DateTime& now);

}  // namespace tpv
