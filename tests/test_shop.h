// A component's surroundings for one test: an empty store, ports that record,
// the suite's stand-ins.
#pragma once

#include <memory>

#include "adapters/headless/headless_front_end.h"
#include "adapters/headless/recorders.h"
#include "host/machine.h"
#include "platform/digest.h"
#include "platform/ports.h"
#include "suite/store_database.h"
#include "suite/suite_factory.h"
#include "tests/test_store.h"

namespace tpv {

// On a connection of its own or another's, which outlives it.
struct TestShop {
  TestShop(Connection& connection, const Clock& clock)
      : database(std::make_shared<suite::StoreDatabase>(connection, 7, front_end, clock,
                                                        settings)) {
    objects.SetPorts(ports);
  }

  // A sibling component that was given the database.
  std::shared_ptr<Object> Create(const char* class_name) {
    auto object = objects.Create(class_name);
    object->Put("MyBd", Variant(std::shared_ptr<Object>(database)));
    return object;
  }

  HeadlessFrontEnd front_end;
  RecordingPrinters printers;
  RecordingDevices devices;
  MemorySettings settings;
  StepClock step_clock;
  RecordingMailer mailer;
  RecordingReports reports;
  RecordingSound sound;
  suite::SuiteFactory objects;
  const std::unique_ptr<Digest> digest = MakeDigest();
  Ports ports{front_end, printers, devices, settings, step_clock, mailer, reports, objects, sound, nullptr, digest.get()};
  std::shared_ptr<DatabaseObject> database;
};

}  // namespace tpv
