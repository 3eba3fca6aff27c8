// What a scenario plays against: the component, its store, and the ports that
// record what it sends out.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "adapters/headless/recorders.h"
#include "component/zrtpve.h"

namespace tpv::scenario {

// What a script does to the program and its machine rather than to the screens.
// Unset where the script's host keeps that to itself.
struct Premises {
  // Another till's connection to the same store.
  std::function<std::unique_ptr<Connection>()> connect;
  // After a kill: a new component on a new connection.
  std::function<void()> start_again;
  // A setting of the machine by the name that a technician gives it. Throws for
  // one that is unknown or a value that does not fit.
  std::function<void(const std::string& name, const std::string& value)> configure;
  // Opens the office over the component's store; returns when it is closed.
  std::function<void()> open_office;
  // The program's first window, in a home folder of its own; returns when it is closed.
  std::function<void()> start_program;
  // Writes a file into that folder.
  std::function<void(const std::string& name, const std::string& text)> write_file;
  RecordingLabels* labels = nullptr;  // that the office has made
};

// Everything outlives the player.
struct Rig {
  RecordingConnection& connection;  // the component's
  StepClock& clock;
  RecordingPrinters& printers;
  RecordingDevices& devices;
  MemorySettings& settings;
  RecordingMailer& mail;
  RecordingReports& reports;
  RecordingSound& sound;
  std::optional<Zrtpve>& component;
  Premises premises;
  RecordingTables* tables = nullptr;  // null: no list leaves the till as a file

  // For the player's own statements.
  Connection& Store() { return connection.Inner(); }
};

}  // namespace tpv::scenario
