#include "host/machine.h"

#include <unistd.h>

#include <iostream>

#include "adapters/files/paper_delivery.h"
#include "adapters/files/private_files.h"
#include "adapters/files/setting_names.h"
#ifdef TPV_WITH_CSV
#include "adapters/csv/csv_files.h"
#endif
#ifdef TPV_WITH_FISCAL
#include "adapters/fiscal/client_certificate.h"
#include "adapters/fiscal/libcrypto_digest.h"
#include "adapters/fiscal/qr_encoder.h"
#include "adapters/fiscal/tax_agency.h"
#endif
#ifdef TPV_WITH_MAIL
#include "adapters/mail/curl_mailer.h"
#endif
#include "fiscal/agency.h"
#include "platform/ui/front_end.h"

namespace tpv {

namespace {

#ifndef TPV_WITH_MAIL
class NoMailer : public Mailer {
 public:
  bool Configured() const override { return false; }
  MailResult Send(const Mail&) override {
    return {false, "Este programa se construyó sin la biblioteca que envía correo"};
  }
};
#endif

#ifndef TPV_WITH_CSV
class NoTables : public TableFiles {
 public:
  std::unique_ptr<TableReader> Open(const std::string&) override { throw TableError(kMissing); }
  std::unique_ptr<TableWriter> Create(const std::string&) override { throw TableError(kMissing); }

 private:
  static constexpr const char* kMissing =
      "Este programa se construyó sin la biblioteca que lee y escribe ficheros CSV";
};
#endif

// "~/" is the user's home in what the operator types, too.
template <typename Files>
class FromHome : public Files {
 public:
  std::unique_ptr<TableReader> Open(const std::string& path) override { return Files::Open(ExpandHome(path)); }
  std::unique_ptr<TableWriter> Create(const std::string& path) override { return Files::Create(ExpandHome(path)); }
};

#ifndef TPV_WITH_FISCAL
class NoCodes : public CodeEncoder {
 public:
  SquareCode Encode(std::string_view) const override {
    throw PrintError("Este programa se construyó sin la biblioteca que dibuja códigos QR");
  }
};
#endif

#ifdef TPV_WITH_CSV
using Spreadsheets = CsvFiles;
#else
using Spreadsheets = NoTables;
#endif

class ShopTables : public FromHome<Spreadsheets> {
 public:
  explicit ShopTables(const Settings& settings) : settings_(settings) {}
  std::string PathOf(const std::string& name) const override {
    if (name.find('/') != std::string::npos) return ExpandHome(name);
    const std::string folder = PaperFolder(settings_, kReportFolder);
    MakePrivateFolder(folder);
    return folder + "/" + name;
  }
  bool Exists(const std::string& path) const override { return ::access(path.c_str(), F_OK) == 0; }

 private:
  const Settings& settings_;
};

std::unique_ptr<Mailer> MailerFor([[maybe_unused]] const Settings& settings,
                                  [[maybe_unused]] const Clock& clock) {
#ifdef TPV_WITH_MAIL
  return std::make_unique<CurlMailer>(settings, clock);
#else
  return std::make_unique<NoMailer>();
#endif
}

}  // namespace

std::unique_ptr<CodeEncoder> MakeCodeEncoder() {
#ifdef TPV_WITH_FISCAL
  return std::make_unique<QrEncoder>();
#else
  return std::make_unique<NoCodes>();
#endif
}

std::unique_ptr<Digest> MakeDigest() {
#ifdef TPV_WITH_FISCAL
  return std::make_unique<LibcryptoDigest>();
#else
  return nullptr;
#endif
}

std::unique_ptr<fiscal::Agency> MakeAgency([[maybe_unused]] const Settings& settings,
                                           [[maybe_unused]] std::function<bool()> stop) {
#ifdef TPV_WITH_FISCAL
  return std::make_unique<fiscal::TaxAgency>(settings, std::move(stop));
#else
  return nullptr;
#endif
}

std::string AgencyObstacle([[maybe_unused]] const Settings& settings) {
#ifdef TPV_WITH_FISCAL
  return fiscal::CertificateTrouble(settings);
#else
  return "Este programa se construyó sin las bibliotecas que envían registros de facturación";
#endif
}

std::unique_ptr<TableFiles> SpreadsheetFiles() { return std::make_unique<FromHome<Spreadsheets>>(); }

Machine::Machine() : Machine(ConfigFolder() + "/tpv.conf") {}

Machine::Machine(std::string settings_file)
    : settings(std::move(settings_file)),
      codes(MakeCodeEncoder()),
      mailer(MailerFor(settings, clock)),
      tables(std::make_unique<ShopTables>(settings)),
      digest(MakeDigest()) {}

Machine::~Machine() { Finish(); }

Ports Machine::PortsFor(ui::FrontEnd& front_end, ObjectFactory& objects, Sound& sound) {
  printers.news.failed = [&front_end](const Notice& notice) {
    if (!notice.detail.empty()) std::cerr << "tpv: " + notice.text + " (" + notice.detail + ")\n";
    front_end.Notify(notice);
  };
  Ports ports{front_end, printers, devices, settings, clock, *mailer, reports, objects, sound};
  ports.digest = digest.get();
  ports.tables = tables.get();
  return ports;
}

Program Machine::ProgramFor(ui::FrontEnd& front_end, ObjectFactory& objects, Sound& sound) {
  Program program{PortsFor(front_end, objects, sound), *tables, reports};
  try {
    program.notice = settings.Protect();
  } catch (const FileError& error) {
    program.notice = error.what();
  }
  return program;
}

}  // namespace tpv
