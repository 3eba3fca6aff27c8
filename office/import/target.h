// What each kind of import adds to the reading, checking and reporting that all share.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "office/import/file_number.h"
#include "office/import/heading.h"
#include "office/import/import.h"
#include "office/import/repeated_keys.h"

namespace tpv::office {

// Rows that are read, checked against the store and written together.
using Batch = std::vector<TableRow>;

// The report while it grows.
class Findings {
 public:
  explicit Findings(ImportReport& report) : report_(report) {}

  void Refuse(long line, std::string field, std::string reason);
  void Took(long line, const std::string& key, bool added, std::string changes);
  void Same() { ++report_.same; }

 private:
  ImportReport& report_;
  long last_refused_ = -1;
};

struct ImportFile {
  Heading heading;
  DecimalMark mark;
  RepeatedKeys repeated;
};

class ImportTarget {
 public:
  virtual ~ImportTarget() = default;

  virtual std::vector<std::string> Columns() const = 0;
  // Whether a column holds numbers, whose decimal mark is learnt.
  virtual bool IsNumber(const std::string& column) const = 0;
  // The columns that the file needs.
  virtual Refusals CheckHeading(const Heading& heading) const = 0;
  // What no two rows may share.
  virtual std::vector<std::string> Keys(const Heading& heading, const TableRow& row) const = 0;
  // Reads what all rows need of the store; before anything else, and again within the
  // transaction when there is one.
  virtual void Begin(Connection& connection) = 0;
  // Checks the rows and, when `write`, stores those that were not refused.
  virtual void Take(Connection& connection, ImportFile& file, const Batch& batch, bool write,
                    Findings& findings) = 0;
};

std::unique_ptr<ImportTarget> ArticleImport();
std::unique_ptr<ImportTarget> CustomerImport();
std::unique_ptr<ImportTarget> StockImport();

}  // namespace tpv::office
