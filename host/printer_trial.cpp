#include "host/printer_trial.h"

#include <mutex>
#include <ostream>

#include "adapters/files/setting_names.h"
#include "fiscal/validation_code.h"
#include "host/machine.h"
#include "output/record_code.h"

namespace tpv {

namespace {

// What was told of while a command ran; what other programs said too.
class Told {
 public:
  explicit Told(Machine& machine) : machine_(machine) {
    machine.printers.news.failed = [this](const Notice& notice) {
      const std::lock_guard lock(mutex_);
      text_ += notice.text + "\n" + (notice.detail.empty() ? "" : notice.detail + "\n");
    };
  }
  ~Told() {
    machine_.Finish();
    machine_.printers.news = {};
  }
  Told(const Told&) = delete;
  Told& operator=(const Told&) = delete;
  // "" when all went well.
  std::string Finish() {
    machine_.Finish();
    return text_;
  }

 private:
  Machine& machine_;
  std::mutex mutex_;
  std::string text_;
};

bool MayPrintCodes(const Settings& settings, const std::string& printer) {
  return !settings.Read(kTpv, kSquareCode, printer).empty() || !settings.Read(kTpv, "Fiscal", "Certificate").empty();
}

// As long as a ticket's, and of nobody's.
std::string SampleUrl(const DateTime& now) {
  fiscal::Record sample;
  sample.issuer = "00000000T";
  sample.document = {"PRUEBA/12345", now};
  sample.total = 1234;
  return fiscal::ValidationUrl(sample);
}

}  // namespace

int ListPrinters(Machine& machine, std::ostream& out) {
  Told told(machine);
  for (const std::string& name : machine.printers.Installed()) {
    out << (name == machine.printers.Current() ? "* " : "  ") << name << "\n";
  }
  const std::string trouble = told.Finish();
  out << trouble;
  return trouble.empty() ? 0 : 1;
}

void PrintTrial(Printers& printers, const Settings& settings, const Clock& clock, const std::string& printer,
                bool with_code) {
  printers.SetCurrent(printer);
  const std::string table =
      settings.Read(kTpv, kCodeTable, printers.Current());
  const auto document = printers.BeginTrial("Prueba de impresión");
  if (with_code || MayPrintCodes(settings, printers.Current())) PrintRecordCode(*document, SampleUrl(clock.Now()));
  document->SetFont("Courier New", 9, true);
  document->PrintLine("Prueba de impresión");
  document->SetFont("Courier New", 9, false);
  document->PrintLine("12345678901234567890123456789012");
  document->PrintLine("Letras: " + (table.empty() ? "lo normal" : table));
  document->PrintLine("áéíóúüñç ÁÉÍÓÚÜÑÇ ¿? ¡! ª º");
  document->PrintLine("àèòï ÀÈÒÏ Łódź");
  document->PrintLine("5,00 €");
  document->PrintLine(ToDayFirstSeconds(clock.Now()) + "\r\n");
  document->End();
}

int TryPrinter(Machine& machine, const std::string& printer, bool with_code, std::ostream& out) {
  std::string folder;
  Told told(machine);
  machine.printers.news.in_folder = [&folder](const std::string& path) { folder = path + "\n"; };
  PrintTrial(machine.printers, machine.settings, machine.clock, printer, with_code);
  const std::string trouble = told.Finish();
  out << folder << trouble;
  return trouble.empty() ? 0 : 1;
}

}  // namespace tpv
