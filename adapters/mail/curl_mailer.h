// Sends mail over SMTP.
#pragma once

#include <chrono>
#include <string>

#include "platform/mailer.h"

namespace tpv {

class Clock;
class Settings;

class CurlMailer : public Mailer {
 public:
  // Both outlive the mailer. The settings are read at each call. After a server
  // did not answer, mails fail at once for a while: a queue of them must not hold
  // the till as many times.
  CurlMailer(const Settings& settings, const Clock& clock) : settings_(settings), clock_(clock) {}

  bool Configured() const override;
  MailResult Send(const Mail& mail) override;

 private:
  const Settings& settings_;
  const Clock& clock_;
  std::string dead_server_;
  std::string dead_error_;
  std::chrono::steady_clock::time_point dead_until_;
};

}  // namespace tpv
