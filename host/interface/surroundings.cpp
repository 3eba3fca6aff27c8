#include "host/interface/surroundings.h"

#include "adapters/files/private_files.h"
#include "context/context.h"
#include "host/interface/faults.h"
#include "host/interface/structs.h"
#include "host/interface/till_database.h"
#include "host/interface/values.h"

namespace tpv::interface {

namespace {

std::string SettingsFile(const zrtpv_options& options) {
  if (options.settings == nullptr) return ConfigFolder() + "/tpv.conf";
  return TextFrom(options.settings, "el fichero de ajustes");
}

zrtpv_components ComponentsOf(const zrtpv_options& options) {
  zrtpv_components components{};
  if (options.components != nullptr) components = Copied(*options.components);
  const bool complete = components.get != nullptr && components.put != nullptr &&
                        components.call != nullptr && components.release != nullptr;
  if (components.create == nullptr || complete) return components;
  throw Fault(ZRTPV_E_ARGUMENT, "Falta una función de los componentes");
}

}  // namespace

void NobodyThere::Hear(const std::string& text) {
  if (message_ != nullptr) message_(host_, text.c_str());
}

Surroundings::Surroundings(const zrtpv_options& options)
    : nobody_(options),
      machine_(SettingsFile(options)),
      components_(ComponentsOf(options)),
      objects_(*this),
      ports_(PortsWith(options.windows)) {
  objects_.SetPorts(ports_);
  ProtectSettings();
}

void Surroundings::ProtectSettings() {
  try {
    if (const std::string notice = machine_.settings.Protect(); !notice.empty()) ports_.ui.Notify({notice, {}});
  } catch (const FileError& error) {
    ports_.ui.Notify({error.what(), {}});
  }
  PassOnNotices();
}

Ports Surroundings::PortsWith(std::int32_t kind) {
  ui::FrontEnd& front_end = FrontEnd(kind);
  return machine_.PortsFor(front_end, objects_, windows_ ? windows_->Loudspeaker() : silence_);
}

// A component of the host lives in the till's thread.
bool Surroundings::HostSendsMail() {
  try {
    return objects_.IsTheHosts("ZRComunicaciones.ZRCOMU");
  } catch (const ObjectError&) {
    return true;  // whoever sends a mail hears of it
  }
}

void Surroundings::Serve(Context& context) {
  if (served_ == context.MyBd.get()) return;
  served_ = context.MyBd.get();
  const auto database = std::dynamic_pointer_cast<TillDatabase>(context.MyBd);
  if (!database || HostSendsMail()) return;
  errands_ = std::make_unique<StoreErrands>(ports_, database->IdUsuario(), database->Reopen());
  ports_.errands = errands_.get();
}

void Surroundings::Settle(Context& context) {
  if (errands_ && context.MyBd && !context.Database().InTransaction()) errands_->Settle(context);
}

void Surroundings::EndErrands(Context& context) {
  served_ = nullptr;
  if (!errands_) return;
  errands_->Stop();
  errands_->Settle(context);
  ports_.errands = nullptr;
  errands_.reset();
}

void Surroundings::PassOnNotices() {
  if (headless_ == nullptr) return;
  for (const Notice& notice : headless_->TakeNotices()) nobody_.Hear(notice.text);
}

void Surroundings::Finish() {
  machine_.Finish();
  PassOnNotices();
  if (windows_ != nullptr) windows_->ShowNotices();
}

ui::FrontEnd& Surroundings::FrontEnd(std::int32_t kind) {
  if (kind == ZRTPV_WINDOWS) {
    windows_ = OpenHostWindows();
    return windows_->FrontEnd();
  }
  if (kind != ZRTPV_HEADLESS) throw Fault(ZRTPV_E_ARGUMENT, "Ventanas: un valor que no existe");
  headless_ = std::make_unique<HeadlessFrontEnd>();
  LeaveAlone();
  return *headless_;
}

}  // namespace tpv::interface
