#include "host/interface/surroundings.h"

#include "adapters/files/private_files.h"
#include "host/interface/faults.h"
#include "host/interface/structs.h"
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
