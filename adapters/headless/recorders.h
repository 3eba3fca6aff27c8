// Ports that keep what the component sends out, so that a scenario can look at
// it, and that fail when they are told to.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/clock.h"
#include "platform/database.h"
#include "platform/label_press.h"
#include "platform/mailer.h"
#include "platform/print_outbox.h"
#include "platform/printer.h"
#include "platform/report.h"
#include "platform/settings.h"
#include "platform/sound.h"
#include "platform/table_file.h"

namespace tpv {

struct PrintedDocument {
  std::string printer;
  std::vector<std::string> lines;  // a square code is its text in brackets
};

class RecordingPrinters;

// What failed on its way to paper, for as long as the script runs.
class RecordedOutbox : public PrintOutbox {
 public:
  explicit RecordedOutbox(RecordingPrinters& printers) : printers_(printers) {}
  // Where it was before, if it was.
  void Keep(UnprintedDocument about, PrintedDocument document);

  std::vector<UnprintedDocument> List() const override;
  void Print(const std::string& id, std::string_view printer) override;
  void Forget(const std::string& id) override { Take(id); }

 private:
  using Kept = std::pair<UnprintedDocument, PrintedDocument>;
  Kept Take(const std::string& id);

  RecordingPrinters& printers_;
  std::map<int, Kept> kept_;  // by id
  int last_id_ = 0;
};

class RecordingPrinters : public Printers {
 public:
  std::vector<std::string> installed = {"Tickets"};
  std::vector<PrintedDocument> documents;
  std::string raw_bytes;
  std::string last_printer;
  bool failing = false;
  bool late = false;  // nobody says whether what they got came out
  const Clock* clock = nullptr;  // outlives this; null: what is kept has no date
  std::function<void(const PrintedDocument&)> on_document;
  std::function<void(const std::string&)> on_raw;
  // When set, every document goes to one that this makes as well.
  std::function<std::unique_ptr<PrintDocument>()> copy;

  std::vector<std::string> Installed() const override { return installed; }
  std::string Current() const override;
  void SetCurrent(std::string_view name) override;
  std::unique_ptr<PrintDocument> Begin(std::string_view title) override;
  void SendRaw(std::string_view bytes) override;
  PrintOutbox* Outbox() override { return &outbox_; }
  void Install(std::vector<std::string> names);
  // Records it, or keeps it in the outbox and throws.
  void Take(UnprintedDocument about, const PrintedDocument& document);

 private:
  void RequireWorking() const;

  std::string chosen_;
  RecordedOutbox outbox_{*this};
};

class RecordingDevices : public OutputDevices {
 public:
  std::map<std::string, std::string> written;
  bool failing = false;
  std::function<void(const std::string& device, const std::string& bytes)> on_write;

  void Write(std::string_view device, std::string_view bytes) override;
};

class RecordingMailer : public Mailer {
 public:
  std::vector<Mail> mails;  // all handed over, those that failed too
  bool configured = true;
  std::string error;  // "" while sending works
  std::function<void(const Mail&)> on_mail;

  bool Configured() const override { return configured; }
  MailResult Send(const Mail& mail) override;
};

class RecordingReports : public ReportPress {
 public:
  std::vector<Report> reports;
  bool keeps = true;  // false: what was printed is gone
  bool failing = false;
  std::function<void(const Report&)> on_report;

  void Print(const Report& report, std::string_view printer) override;
  std::string Show(const Report& report, std::string_view name) override;
};

class RecordingSound : public Sound {
 public:
  bool asked_for = false;

  void Warn() override { asked_for = true; }
};

// Notes the lines of files, their cells joined by " | ", and writes them where it can.
class RecordingTables : public TableFiles {
 public:
  TableFiles* real = nullptr;  // outlives this; null: nothing is written
  std::vector<std::string> lines;
  std::function<void(const std::string& line)> on_line;

  std::unique_ptr<TableReader> Open(const std::string& path) override;
  std::unique_ptr<TableWriter> Create(const std::string& path) override;
};

class MemorySettings : public Settings {
 public:
  std::string Read(std::string_view application, std::string_view section,
                   std::string_view key) const override;
  void Write(std::string_view application, std::string_view section, std::string_view key,
             std::string_view value) override;
  std::vector<std::string> Keys(std::string_view application, std::string_view section) const override;

 private:
  std::map<std::string, std::string> values_;
};

// Keeps the labels instead of making a file of them.
class RecordingLabels : public LabelPress {
 public:
  std::vector<Label> labels;
  int used = 0;  // of the first sheet

  std::string Show(const std::vector<Label>& made, const LabelSheet& sheet, std::string_view name) override {
    labels = made;
    used = sheet.used;
    return std::string(name) + ".pdf";
  }
};

// Stands still between commands when it was fixed; the machine's time otherwise.
class StepClock : public Clock {
 public:
  StepClock() = default;
  explicit StepClock(const DateTime& moment) : fixed(moment) {}

  std::optional<DateTime> fixed;

  DateTime Now() const override;
  DateTime Utc() const override;  // the fixed moment is Madrid's
  void Step() {
    if (fixed) fixed = AddSeconds(*fixed, 1);
  }
};

// Notes every statement sent and fails those that hold a fragment.
class RecordingConnection : public Connection {
 public:
  // Over a connection that outlives it, or one of its own.
  explicit RecordingConnection(Connection& inner) : inner_(&inner) {}
  explicit RecordingConnection(std::unique_ptr<Connection> inner)
      : own_(std::move(inner)), inner_(own_.get()) {}

  std::vector<std::string> sent;
  std::string failing_fragment;  // "" for none

  // What it works on: statements there are neither noted nor failed.
  Connection& Inner() { return *inner_; }
  // As when the program that has it is killed: what is open in the store is
  // rolled back, and nothing goes out any more until it is renewed.
  void Cut();
  void Renew(std::unique_ptr<Connection> inner);

  std::unique_ptr<Recordset> Execute(std::string_view sql) override;
  void BeginTrans() override;
  void CommitTrans() override;
  void RollbackTrans() override {
    if (!cut_) inner_->RollbackTrans();
  }
  bool InTransaction() const override { return inner_->InTransaction(); }
  void BeginSnapshot() override { inner_->BeginSnapshot(); }
  void EndSnapshot() noexcept override { inner_->EndSnapshot(); }
  bool KeepsLists() const override { return inner_->KeepsLists(); }
  std::optional<std::uint64_t> ChangeMark() override { return inner_->ChangeMark(); }
  MonthMemory* Months() override { return inner_->Months(); }

 private:
  void RequireAllowed(std::string_view sql) const;

  std::unique_ptr<Connection> own_;
  Connection* inner_;
  bool cut_ = false;
};

std::string Hex(std::string_view bytes);

}  // namespace tpv
