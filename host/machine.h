// What the till really prints, sends and keeps on this machine: every port
// behind the component but the front end, the store and the suite.
#pragma once

#include <memory>

#include "adapters/files/file_settings.h"
#include "adapters/files/pdf_reports.h"
#include "adapters/files/raw_devices.h"
#include "adapters/files/shop_printers.h"
#include "adapters/files/system_clock.h"
#include "platform/mailer.h"
#include "platform/ports.h"
#include "platform/sound.h"
#include "platform/table_file.h"

namespace tpv {

class Machine {
 public:
  Machine();  // the user's settings
  explicit Machine(std::string settings_file);

  // The machine and all arguments outlive what uses the ports.
  Ports PortsFor(ui::FrontEnd& front_end, ObjectFactory& objects, Sound& sound);

  FileSettings settings;
  SystemClock clock;
  ShopPrinters printers{settings, clock};
  RawDevices devices{settings};
  PdfReports reports{settings, clock, printers};
  std::unique_ptr<Mailer> mailer;
  std::unique_ptr<TableFiles> tables;  // of spreadsheets
};

}  // namespace tpv
