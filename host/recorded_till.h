// A till whose paper, drawer and mail are recorded instead of leaving the machine:
// what scripts and random operators work on.
#pragma once

#include "adapters/headless/scenario/rig.h"
#include "suite/store_database.h"
#include "suite/suite_factory.h"

namespace tpv {

struct RecordedTill {
  // All arguments outlive the till.
  RecordedTill(Connection& shop_store, ui::FrontEnd& screens, StepClock& till_clock, int user)
      : store(shop_store), clock(till_clock), front_end(screens) {
    objects.SetPorts(ports);
    component.context().MyBd =
        std::make_shared<suite::StoreDatabase>(connection, user, front_end, clock);
  }

  Connection& store;
  StepClock& clock;
  ui::FrontEnd& front_end;
  RecordingConnection connection{store};
  RecordingPrinters printers;
  RecordingDevices devices;
  MemorySettings settings;
  RecordingMailer mail;
  RecordingReports reports;
  suite::SuiteFactory objects;
  Ports ports{front_end, printers, devices, settings, clock, mail, reports, objects};
  Zrtpve component{ports};
  scenario::Rig rig{store, connection, clock, printers, devices, settings, mail, reports, component};
};

}  // namespace tpv
