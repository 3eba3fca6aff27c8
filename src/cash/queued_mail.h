// The closure mails of the store as tills take them, send them and note what became of
// each.
#pragma once

#include <string>
#include <vector>

#include "platform/database.h"

namespace tpv {

struct Context;

struct Letter {
  std::string recipient;
  std::string subject;
  std::string body;
};

struct QueuedMail {
  std::string id;
  Letter letter;
  std::string error;  // of the last time, with its moment before it; "" for none

  // It may have arrived: nobody sends it again without being told to.
  bool Doubtful() const;
  bool Says(const std::string& reason) const;  // the last time ended so
};

// "DD/MM/YYYY HH:MM:SS"
std::string MailMoment(Context& context);

// By id, read whole: taking one ends what a rollback ends.
std::vector<QueuedMail> WaitingMails(Connection& connection);

// Whether some till took the mail a short while ago. One that died with it leaves it
// to the others after that.
bool TakenElsewhere(Connection& connection, const std::string& id);

// The mail is this till's to send; false when it is gone out or another till has it.
bool TakeMail(Context& context, const std::string& id);

void MarkSent(Context& context, const std::string& id);
void NoteFailure(Context& context, const std::string& id, const std::string& error);
void ForgetFailure(Context& context, const std::string& id);

// What became of a mail that was taken.
void NoteOutcome(Context& context, const std::string& id, bool sent, const std::string& error);

}  // namespace tpv
