// What a host's till works with: this machine, a front end, and the components
// created by name. Everything that came out of a till holds on to it.
#pragma once

#include <memory>
#include <string>

#include "adapters/headless/headless_front_end.h"
#include "host/host_windows.h"
#include "host/interface/host_components.h"
#include "host/machine.h"
#include "host/store_errands.h"
#include "platform/ui/operator.h"

namespace tpv::interface {

// Screens opened without a scenario close at once; boxes go to the host's callback.
class NobodyThere : public ui::Driver {
 public:
  explicit NobodyThere(const zrtpv_options& options)
      : host_(options.host), message_(options.message) {}
  bool Step() override { return false; }
  void OnBox(const ui::MessageBox& box) override { Hear(box.text); }
  void Hear(const std::string& text);

 private:
  void* host_;
  void (*message_)(void* host, const char* text);
};

class Surroundings : public std::enable_shared_from_this<Surroundings> {
 public:
  // Throws Fault for windows that cannot be.
  explicit Surroundings(const zrtpv_options& options);

  Ports& ports() { return ports_; }
  Machine& machine() { return machine_; }
  // What the host supplies itself; for a scenario's components too.
  const zrtpv_components& components() const { return components_; }
  // Null in a till with windows.
  HeadlessFrontEnd* headless() { return headless_.get(); }
  void LeaveAlone() { headless_->SetDriver(nobody_); }  // after a scenario
  // Without windows: what went wrong behind the till's back goes to the host.
  void PassOnNotices();
  // Mail of this store goes out behind the till's back, unless the host sends it itself.
  // Before each call.
  void Serve(Context& context);
  // Notes what became of mails, while no call is under way.
  void Settle(Context& context);
  // The same for an end: waits for the mail under way.
  void EndErrands(Context& context);
  // Waits for what is still to be printed and tells the rest.
  void Finish();

 private:
  Ports PortsWith(std::int32_t kind);
  // A password that others could read is no longer theirs, and the host hears of it.
  void ProtectSettings();
  bool HostSendsMail();
  ui::FrontEnd& FrontEnd(std::int32_t kind);

  NobodyThere nobody_;
  std::unique_ptr<HeadlessFrontEnd> headless_;
  std::unique_ptr<HostWindows> windows_;
  Silence silence_;
  Machine machine_;  // tells the front end to its end
  zrtpv_components components_;
  HostComponents objects_;
  Ports ports_;
  const Object* served_ = nullptr;
  std::unique_ptr<StoreErrands> errands_;  // goes first
};

}  // namespace tpv::interface
