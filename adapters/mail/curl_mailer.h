// Sends mail over SMTP.
#pragma once

#include "platform/mailer.h"

namespace tpv {

class Clock;
class Settings;

class CurlMailer : public Mailer {
 public:
  // Both outlive the mailer. The settings are read at each call.
  CurlMailer(const Settings& settings, const Clock& clock) : settings_(settings), clock_(clock) {}

  bool Configured() const override;
  std::string Send(const Mail& mail) override;

 private:
  const Settings& settings_;
  const Clock& clock_;
};

}  // namespace tpv
