#include "adapters/headless/recorders.h"

#include <algorithm>
#include <chrono>

#include "base/text.h"
#include "fiscal/moment.h"
#include "platform/square_code.h"

namespace tpv {

namespace {

class RecordingWriter : public TableWriter {
 public:
  RecordingWriter(RecordingTables& tables, std::unique_ptr<TableWriter> real)
      : tables_(tables), real_(std::move(real)) {}
  void Write(std::span<const std::string> cells) override {
    std::string line;
    for (std::size_t i = 0; i < cells.size(); ++i) line += (i > 0 ? " | " : "") + cells[i];
    lines_.push_back(std::move(line));
    if (real_) real_->Write(cells);
  }
  void Finish() override {
    if (real_) real_->Finish();
    for (const std::string& line : lines_) {
      tables_.lines.push_back(line);
      if (tables_.on_line) tables_.on_line(line);
    }
  }

 private:
  RecordingTables& tables_;
  std::unique_ptr<TableWriter> real_;
  std::vector<std::string> lines_;
};

}  // namespace

std::unique_ptr<TableReader> RecordingTables::Open(const std::string& path) {
  if (real == nullptr) throw TableError("No se puede leer " + path);
  return real->Open(path);
}

std::unique_ptr<TableWriter> RecordingTables::Create(const std::string& path) {
  return std::make_unique<RecordingWriter>(*this, real != nullptr ? real->Create(path) : nullptr);
}

class RecordedDocument : public PrintDocument {
 public:
  RecordedDocument(RecordingPrinters& printers, std::string_view title, std::string printer)
      : printers_(printers),
        title_(title),
        document_{std::move(printer), {}},
        copy_(printers.copy ? printers.copy() : nullptr) {}

  void SetFont(std::string_view family, double points, bool bold) override {
    line_height_ = points * 0.0423;
    if (copy_) copy_->SetFont(family, points, bold);
  }
  void PrintLine(std::string_view text) override {
    if (copy_) copy_->PrintLine(text);
    const bool break_inside = text.ends_with(kLineBreak);
    if (break_inside) text.remove_suffix(kLineBreak.size());
    document_.lines.emplace_back(text);
    y_ += line_height_ * (break_inside ? 2 : 1);
  }
  void PrintCode(std::string_view text) override {
    if (copy_) copy_->PrintCode(text);
    document_.lines.push_back("[" + std::string(text) + "]");
    y_ += kCodeSide + 2 * kCodeMargin;
  }
  double Y() const override { return y_; }
  void SetY(double centimetres) override {
    y_ = centimetres;
    if (copy_) copy_->SetY(centimetres);
  }
  void End() override {
    UnprintedDocument about;
    about.title = title_;
    printers_.Take(std::move(about), document_);
    if (copy_) copy_->End();
  }

 private:
  RecordingPrinters& printers_;
  const std::string title_;
  PrintedDocument document_;
  std::unique_ptr<PrintDocument> copy_;
  double y_ = 0;
  double line_height_ = 0.4;
};

void RecordedOutbox::Keep(UnprintedDocument about, PrintedDocument document) {
  if (about.id.empty()) about.id = std::to_string(++last_id_);
  const int id = std::stoi(about.id);
  kept_[id] = {std::move(about), std::move(document)};
}

std::vector<UnprintedDocument> RecordedOutbox::List() const {
  std::vector<UnprintedDocument> documents;
  for (const auto& [id, kept] : kept_) documents.push_back(kept.first);
  return documents;
}

RecordedOutbox::Kept RecordedOutbox::Take(const std::string& id) {
  const auto found = kept_.find(std::stoi(id));
  if (found == kept_.end()) throw PrintError("El documento ya no está sin imprimir");
  Kept kept = std::move(found->second);
  kept_.erase(found);
  return kept;
}

void RecordedOutbox::Print(const std::string& id, std::string_view printer) {
  auto [about, document] = Take(id);
  if (!printer.empty()) document.printer = printer;
  printers_.Take(std::move(about), document);
}

std::string RecordingPrinters::Current() const {
  if (!chosen_.empty()) return chosen_;
  return installed.empty() ? std::string() : installed.front();
}

void RecordingPrinters::SetCurrent(std::string_view name) {
  const bool found = std::find(installed.begin(), installed.end(), name) != installed.end();
  if (!found) throw PrintError("No existe la impresora «" + std::string(name) + "»");
  chosen_ = name;
}

void RecordingPrinters::Install(std::vector<std::string> names) {
  installed = std::move(names);
  chosen_.clear();
}

void RecordingPrinters::RequireWorking() const {
  if (late) throw UnsurePrint("La impresora no ha respondido a tiempo; puede que el documento salga más tarde");
  if (failing) throw PrintError("La impresora no responde");
  if (installed.empty()) throw PrintError("No hay ninguna impresora instalada");
}

void RecordingPrinters::Take(UnprintedDocument about, const PrintedDocument& document) {
  try {
    RequireWorking();
  } catch (const PrintError& error) {
    about.printer = document.printer;
    about.why = error.what();
    about.maybe_printed |= dynamic_cast<const UnsurePrint*>(&error) != nullptr;
    if (about.id.empty() && clock != nullptr) about.since = clock->Now();
    if (!about.title.empty()) outbox_.Keep(std::move(about), document);
    throw;
  }
  last_printer = document.printer;
  documents.push_back(document);
  if (on_document) on_document(document);
}

std::unique_ptr<PrintDocument> RecordingPrinters::Begin(std::string_view title) {
  return std::make_unique<RecordedDocument>(*this, title, Current());
}

void RecordingPrinters::SendRaw(std::string_view bytes) {
  RequireWorking();
  last_printer = Current();
  raw_bytes += bytes;
  if (on_raw) on_raw(std::string(bytes));
}

void RecordingDevices::Write(std::string_view device, std::string_view bytes) {
  if (failing) throw PrintError("No se puede abrir «" + std::string(device) + "»");
  written[std::string(device)] += bytes;
  if (on_write) on_write(std::string(device), std::string(bytes));
}

namespace {
std::string SettingName(std::string_view application, std::string_view section,
                        std::string_view key) {
  return std::string(application) + "/" + std::string(section) + "/" + std::string(key);
}
}  // namespace

MailResult RecordingMailer::Send(const Mail& mail) {
  mails.push_back(mail);
  if (on_mail) on_mail(mail);
  return {error.empty(), error};
}

void RecordingReports::Print(const Report& report, std::string_view) {
  if (failing) throw PrintError("La impresora no responde");
  if (keeps) reports.push_back(report);
  if (on_report) on_report(report);
}

std::string RecordingReports::Show(const Report& report, std::string_view name) {
  Print(report, {});
  return std::string(name) + ".pdf";
}

std::string MemorySettings::Read(std::string_view application, std::string_view section,
                                 std::string_view key) const {
  const auto found = values_.find(SettingName(application, section, key));
  return found == values_.end() ? std::string() : found->second;
}

void MemorySettings::Write(std::string_view application, std::string_view section,
                           std::string_view key, std::string_view value) {
  values_[SettingName(application, section, key)] = value;
}

std::vector<std::string> MemorySettings::Keys(std::string_view application, std::string_view section) const {
  const std::string before = SettingName(application, section, "");
  std::vector<std::string> keys;
  for (const auto& [name, value] : values_) {
    if (name.starts_with(before) && !value.empty()) keys.push_back(name.substr(before.size()));
  }
  return keys;
}

DateTime StepClock::Now() const {
  return fixed ? *fixed : ToLocal(std::chrono::system_clock::now());
}

DateTime StepClock::Utc() const {
  return fixed ? fiscal::UtcOfWall(fiscal::Zone::Madrid, *fixed) : ToUtc(std::chrono::system_clock::now());
}

void RecordingConnection::Cut() {
  cut_ = true;
  if (inner_->InTransaction()) inner_->RollbackTrans();
}

void RecordingConnection::Renew(std::unique_ptr<Connection> inner) {
  own_.reset();  // the old one first: it may hold on to the store
  own_ = std::move(inner);
  inner_ = own_.get();
  cut_ = false;
}

void RecordingConnection::RequireAllowed(std::string_view sql) const {
  if (cut_) throw DatabaseError("El programa ha terminado", "08003");
  if (failing_fragment.empty()) return;
  if (FoldCase(sql).find(FoldCase(failing_fragment)) != std::string::npos) {
    throw DatabaseError("Fallo provocado en la sentencia", "HY000");
  }
}

std::unique_ptr<Recordset> RecordingConnection::Execute(std::string_view sql) {
  sent.emplace_back(sql);
  RequireAllowed(sql);
  return inner_->Execute(sql);
}

void RecordingConnection::BeginTrans() {
  RequireAllowed("BEGIN TRANSACTION");
  inner_->BeginTrans();
}

void RecordingConnection::CommitTrans() {
  RequireAllowed("COMMIT TRANSACTION");
  inner_->CommitTrans();
}

std::string Hex(std::string_view bytes) {
  constexpr char kDigits[] = "0123456789ABCDEF";
  std::string text;
  for (const char c : bytes) {
    const auto byte = static_cast<unsigned char>(c);
    text += kDigits[byte >> 4];
    text += kDigits[byte & 15];
  }
  return text;
}

}  // namespace tpv
