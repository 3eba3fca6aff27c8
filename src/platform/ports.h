// Everything outside the component that it can reach, handed over once by the
// host. All ports outlive the component.
#pragma once

namespace tpv {

namespace ui {
class FrontEnd;
}
class Printers;
class OutputDevices;
class Settings;
class Clock;
class Mailer;
class ObjectFactory;
class ReportPress;
class Sound;
class Errands;
class Digest;
class TableFiles;

struct Ports {
  ui::FrontEnd& ui;
  Printers& printers;
  OutputDevices& devices;
  Settings& settings;
  Clock& clock;
  Mailer& mailer;
  ReportPress& reports;
  ObjectFactory& objects;
  Sound& sound;
  Errands* errands = nullptr;  // null: everything is done at once
  const Digest* digest = nullptr;  // null: this build makes no invoice records
  TableFiles* tables = nullptr;  // null: no file of a spreadsheet is written
};

}  // namespace tpv
