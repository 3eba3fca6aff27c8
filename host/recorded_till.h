// A till whose paper, drawer and mail are recorded instead of leaving the machine:
// what scripts and random operators work on.
#pragma once

#include "adapters/headless/scenario/rig.h"
#include "host/chosen_store.h"
#include "host/known_settings.h"
#include "office/menu_screen.h"
#include "host/machine.h"
#include "host/own_home.h"
#include "host/start_screen.h"
#include "suite/store_database.h"
#include "suite/suite_factory.h"

namespace tpv {

class RecordedTill {
 public:
  using Opener = std::function<std::unique_ptr<Connection>()>;

  // All arguments outlive the till. What `open` gives is the till's own; it is
  // asked again for another till's and when the program starts again.
  RecordedTill(Opener open, ui::FrontEnd& screens, StepClock& till_clock, int user)
      : clock(till_clock), front_end(screens), connection(open()), user_(user) {
    rig.premises.connect = open;
    rig.premises.start_again = [this, open = std::move(open)] {
      component.reset();
      connection.Renew(open());
      StartProgram();
    };
    StartProgram();
  }
  // On a connection that cannot be had twice.
  RecordedTill(Connection& store, ui::FrontEnd& screens, StepClock& till_clock, int user)
      : clock(till_clock), front_end(screens), connection(store), user_(user) {
    StartProgram();
  }

  Connection& Store() { return connection.Inner(); }

  StepClock& clock;
  ui::FrontEnd& front_end;
  RecordingConnection connection;
  RecordingPrinters printers;
  RecordingDevices devices;
  MemorySettings settings;
  RecordingMailer mail;
  RecordingReports reports;
  RecordingSound sound;
  RecordingTables tables;
  suite::SuiteFactory objects;
  const std::unique_ptr<Digest> digest = MakeDigest();
  Ports ports{front_end, printers, devices, settings, clock, mail, reports, objects, sound, nullptr, digest.get(),
              &tables};
  std::unique_ptr<TableFiles> files = SpreadsheetFiles();
  RecordingLabels labels;
  office::Tools tools{.tables = files.get(), .labels = &labels};
  std::optional<Zrtpve> component;
  scenario::Rig rig{connection, clock, printers, devices, settings, mail, reports, sound, component, {}, &tables};

 private:
  void StartProgram() {
    printers.clock = &clock;
    objects.SetPorts(ports);
    rig.premises.configure = [this](const std::string& name, const std::string& value) {
      ChangeSetting(settings, name, value);
    };
    rig.premises.labels = &labels;
    rig.premises.open_office = [this] { office::OpenOffice(component->context(), tools); };
    rig.premises.write_file = [this](const std::string& name, const std::string& text) { Home().Write(name, text); };
    rig.premises.start_program = [this] { OpenStartWindow(); };
    component.emplace(ports);
    component->context().MyBd =
        std::make_shared<suite::StoreDatabase>(connection, user_, front_end, clock, settings);
  }

  const OwnHome& Home() {
    if (!home_) home_.emplace();
    return *home_;
  }

  // What a script asks of the store is asked of the shop that is open.
  void OpenStartWindow() {
    Home();
    StartScreen screen({ports, *files, labels, false, {}, [this](const std::string& store) {
                          rig.premises.connect = [this, store] { return OpenChosenStore(store, clock); };
                          connection.Renew(rig.premises.connect());
                        }});
    front_end.ShowModal(screen);
  }

  std::optional<OwnHome> home_;
  int user_;
};

}  // namespace tpv
