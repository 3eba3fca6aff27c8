// What the till really prints, sends and keeps on this machine: every port
// behind the component but the front end, the store and the suite.
#pragma once

#include <functional>
#include <memory>

#include "adapters/files/file_settings.h"
#include "adapters/files/pdf_reports.h"
#include "adapters/files/raw_devices.h"
#include "adapters/files/shop_printers.h"
#include "adapters/files/system_clock.h"
#include "platform/digest.h"
#include "host/program.h"
#include "platform/mailer.h"
#include "platform/ports.h"
#include "platform/sound.h"
#include "platform/square_code.h"
#include "platform/table_file.h"

namespace tpv {

namespace fiscal {
class Agency;
}

// Files of spreadsheets; without the library for them each says so.
std::unique_ptr<TableFiles> SpreadsheetFiles();

class Machine {
 public:
  Machine();  // the user's settings
  explicit Machine(std::string settings_file);
  // Finishes.
  ~Machine();

  // The machine and all arguments outlive what uses the ports. The front end is told what
  // goes wrong behind its back until the machine is gone or finished.
  Ports PortsFor(ui::FrontEnd& front_end, ObjectFactory& objects, Sound& sound);
  // For the windows of the program; `objects` goes unused.
  Program ProgramFor(ui::FrontEnd& front_end, ObjectFactory& objects, Sound& sound);
  // Returns when what was to be printed is printed or its time is over.
  void Finish() { lines.Finish(); }

  FileSettings settings;
  SystemClock clock;
  WorkLines lines;
  std::unique_ptr<CodeEncoder> codes;
  ShopPrinters printers{settings, clock, lines, *codes};
  RawDevices devices{settings, lines};
  PdfReports reports{settings, clock, printers, lines, *codes};
  std::unique_ptr<Mailer> mailer;
  std::unique_ptr<TableFiles> tables;  // of spreadsheets
  std::unique_ptr<Digest> digest;      // null in a build without the library
};

// Throws PrintError for every text in a build without the library.
std::unique_ptr<CodeEncoder> MakeCodeEncoder();
// Null in such a build.
std::unique_ptr<Digest> MakeDigest();

// The tax agency as these settings reach it; `stop` gives up waiting for it. The settings
// outlive it. Null in such a build.
std::unique_ptr<fiscal::Agency> MakeAgency(const Settings& settings, std::function<bool()> stop);
// What keeps the certificate of the settings from being used; "" when it can be.
std::string AgencyObstacle(const Settings& settings);

}  // namespace tpv
