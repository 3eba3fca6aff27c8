// E-mails of the till: closure tickets wait in a queue until a server takes
// them; a failed closure is told to support at once.
#pragma once

#include <string>
#include <string_view>

namespace tpv {

struct Context;

// Puts a closure's text into the queue for the recipient of par_tpvemail; does
// nothing when the shop has none.
void QueueClosureMail(Context& context, std::string_view text);

// Sends what is waiting, oldest first, and what no other till is sending. What cannot be
// sent stays with the reason beside it; without mail settings nothing happens. A server
// that keeps the till waiting ends the round.
void SendQueuedMails(Context& context);
// The same for where nothing may stop the operator: behind the window where the host
// can do that, and a failure is shown or stays with the mails. A mail whose answer was
// lost may have arrived: it is not sent again before the operator, asked, says so.
enum class Doubtful { Ask, Leave };
void SendQueuedMailsOrTell(Context& context, Doubtful doubtful);

// Best effort: whether it went out is nobody's business here, and nothing is thrown.
void SendMailNow(Context& context, std::string_view recipient, std::string_view body,
                 std::string_view subject);

}  // namespace tpv
