// What a scenario plays against: the component, its store, and the ports that
// record what it sends out.
#pragma once

#include "adapters/headless/recorders.h"
#include "component/zrtpve.h"

namespace tpv::scenario {

// Everything outlives the player.
struct Rig {
  Connection& store;               // for the player's own statements
  RecordingConnection& connection; // the component's
  StepClock& clock;
  RecordingPrinters& printers;
  RecordingDevices& devices;
  MemorySettings& settings;
  RecordingMailer& mail;
  RecordingReports& reports;
  Zrtpve& component;
};

}  // namespace tpv::scenario
