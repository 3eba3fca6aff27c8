// The tax agency behind its web service.
#pragma once

#include <functional>

#include "fiscal/agency.h"
#include "platform/settings.h"

namespace tpv::fiscal {

class TaxAgency : public Agency {
 public:
  // The settings outlive it and are read for each message. `stop` is asked while an answer
  // is awaited: true gives up.
  TaxAgency(const Settings& settings, std::function<bool()> stop)
      : settings_(settings), stop_(std::move(stop)) {}

  void RequireReady() override;
  Answer Send(std::span<const Record> records, bool outage) override;

 private:
  const Settings& settings_;
  const std::function<bool()> stop_;
};

}  // namespace tpv::fiscal
