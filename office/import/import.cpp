#include "office/import/import.h"

#include <algorithm>

#include "base/text.h"
#include "office/import/target.h"
#include "platform/database.h"
#include "platform/pulse.h"

namespace tpv::office {

void Findings::Refuse(long line, std::string field, std::string reason) {
  if (line != last_refused_) ++report_.refused;
  last_refused_ = line;
  if (report_.refusals.size() < kLinesReported) {
    report_.refusals.push_back({line, std::move(field), std::move(reason)});
  }
}

void Findings::Took(long line, const std::string& key, bool added, std::string changes) {
  ++(added ? report_.added : report_.changed);
  if (report_.lines.size() < kLinesReported) {
    report_.lines.push_back({line, key, added, std::move(changes)});
  }
}

namespace {

constexpr std::size_t kBatch = 200;
constexpr double kLookingShare = 0.2;  // of the work, about

std::unique_ptr<ImportTarget> TargetOf(ImportKind kind) {
  switch (kind) {
    case ImportKind::Customers:
      return CustomerImport();
    case ImportKind::Stock:
      return StockImport();
    default:
      return ArticleImport();
  }
}

class Run {
 public:
  Run(Connection& connection, TableFiles& files, const ImportOrder& order)
      : connection_(connection),
        target_(TargetOf(order.kind)),
        reader_(files.Open(order.path)) {}

  ImportReport Preview() {
    if (LookThrough()) Take(false);
    return Report();
  }

  ImportReport Store(const std::function<void()>& before_commit) {
    if (!LookThrough()) return Report();
    Transaction transaction(connection_);
    Take(true);
    if (report_.refused == 0) {
      if (before_commit) before_commit();
      transaction.Commit();
      report_.stored = true;
    }
    return Report();
  }

 private:
  // The heading, the decimal mark and the repeated keys; false when the file is refused.
  bool LookThrough() {
    TableRow row;
    if (!reader_->Next(row)) return RefuseFile({{0, "", "el fichero está vacío"}});
    Refusals refusals;
    target_->Begin(connection_);
    const std::vector<std::string> columns = target_->Columns();
    file_ = std::make_unique<ImportFile>(ImportFile{Heading(row, columns, refusals), {}, {}});
    if (refusals.empty()) refusals = target_->CheckHeading(file_->heading);
    for (Refusal& refusal : refusals) refusal.line = row.line;
    if (!refusals.empty()) return RefuseFile(refusals);
    for (long rows = 0; reader_->Next(row);) {
      for (const std::string& column : columns) {
        if (target_->IsNumber(column)) file_->mark.Learn(file_->heading.Cell(row, column));
      }
      for (const std::string& key : target_->Keys(file_->heading, row)) file_->repeated.Note(key);
      if (++rows % static_cast<long>(kBatch) == 0) Pulse(reader_->Share() * kLookingShare);
    }
    file_->repeated.Close();
    reader_->Rewind();
    return reader_->Next(row);
  }

  void Take(bool write) {
    target_->Begin(connection_);
    Batch batch;
    TableRow row;
    for (bool more = true; more;) {
      batch.clear();
      while (batch.size() < kBatch && (more = reader_->Next(row))) {
        if (Readable(row)) batch.push_back(std::move(row));
      }
      if (!batch.empty()) target_->Take(connection_, *file_, batch, write, findings_);
      Pulse(kLookingShare + reader_->Share() * (1 - kLookingShare));
      if (write && report_.refused > 0) return;  // nothing will be stored
    }
  }

  bool Readable(const TableRow& row) {
    for (std::size_t i = 0; i < row.cells.size(); ++i) {
      if (i >= file_->heading.size() && !row.cells[i].empty()) {
        findings_.Refuse(row.line, "",
                         "tiene más celdas que la cabecera; puede que a un texto con el "
                         "separador le falten las comillas");
        return false;
      }
      for (const char c : row.cells[i]) {
        const bool control =
            static_cast<unsigned char>(c) < 0x20 && c != '\n' && c != '\r' && c != '\t';
        if (control) return RefuseCharacters(row);
      }
      if (row.cells[i].find("\xEF\xBF\xBD") != std::string::npos) return RefuseCharacters(row);
    }
    return true;
  }

  bool RefuseCharacters(const TableRow& row) {
    findings_.Refuse(row.line, "",
                     "tiene caracteres que no se pueden leer: guarde el fichero como CSV UTF-8");
    return false;
  }

  bool RefuseFile(const Refusals& refusals) {
    report_.refusals = refusals;
    report_.refused = 1;
    return false;
  }

  ImportReport Report() {
    std::stable_sort(
        report_.refusals.begin(), report_.refusals.end(),
        [](const Refusal& left, const Refusal& right) { return left.line < right.line; });
    return std::move(report_);
  }

  Connection& connection_;
  std::unique_ptr<ImportTarget> target_;
  std::unique_ptr<TableReader> reader_;
  std::unique_ptr<ImportFile> file_;
  ImportReport report_;
  Findings findings_{report_};
};

// A file that cannot be read is refused as any other.
template <typename Work>
ImportReport RefusingUnreadable(Work work) {
  try {
    return work();
  } catch (const TableError& error) {
    ImportReport report;
    report.refused = 1;
    report.refusals.push_back({error.line(), "", error.what()});
    return report;
  }
}

}  // namespace

ImportReport PreviewImport(Connection& connection, TableFiles& files, const ImportOrder& order) {
  return RefusingUnreadable([&] { return Run(connection, files, order).Preview(); });
}

ImportReport StoreImport(Connection& connection, TableFiles& files, const ImportOrder& order,
                         const std::function<void()>& before_commit) {
  return RefusingUnreadable([&] { return Run(connection, files, order).Store(before_commit); });
}

}  // namespace tpv::office
