// The real screens under measurement: no window, no player, nothing recorded
// that a till would not do.
#pragma once

#include <memory>
#include <string>

#include "adapters/headless/headless_front_end.h"
#include "adapters/headless/recorders.h"
#include "component/zrtpve.h"
#include "sale/sale_screen.h"
#include "host/machine.h"
#include "platform/digest.h"
#include "suite/store_database.h"
#include "suite/suite_factory.h"

namespace tpv::bench {

class Till : private ui::Driver {
 public:
  // Opens the till for agent 1 when it is closed. The connection outlives the till.
  explicit Till(Connection& connection, int number = 1);

  void StartSale();
  void Scan(const std::string& code);
  // The checkout from opening to the printed ticket and the emptied screen.
  void Finish();
  // Is the till open, its last ticket, the next number (taken and given back).
  void State();
  double Debt(int customer);

  Context& context() { return component_.context(); }

 private:
  bool Step() override;  // pays whatever checkout opens
  void OnBox(const ui::MessageBox& box) override;
  void Type(const std::string& text);

  Connection& connection_;
  std::string number_;
  HeadlessFrontEnd front_end_;
  RecordingPrinters printers_;
  RecordingDevices devices_;
  MemorySettings settings_;
  StepClock clock_;
  RecordingMailer mailer_;
  RecordingReports reports_;
  Silence sound_;
  suite::SuiteFactory objects_;
  const std::unique_ptr<Digest> digest_ = MakeDigest();
  Ports ports_{front_end_, printers_, devices_, settings_, clock_, mailer_, reports_, objects_, sound_, nullptr,
               digest_.get()};
  Zrtpve component_{ports_};
  std::unique_ptr<FrmTpv> screen_;
};

}  // namespace tpv::bench
