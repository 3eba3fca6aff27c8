// Writes what a shop has into files for spreadsheets.
#pragma once

#include <functional>
#include <optional>
#include <string>

#include "base/date_time.h"

namespace tpv {
class Connection;
class TableFiles;
}  // namespace tpv

namespace tpv::office {

enum class ExportKind { Articles, Customers, Stock, Tickets, Lines, Payments, Invoices, Closures };

struct ExportOrder {
  ExportKind kind = ExportKind::Articles;
  std::string path;
  // Days, both included, of what has a date; nullopt for no bound.
  std::optional<DateTime> from, to;
};

// Whether its rows have a date to choose by.
bool IsDated(ExportKind kind);

// Called now and then with the rows written; false stops it and leaves no file.
using ExportProgress = std::function<bool(long rows)>;

// Writes the file and returns its rows, -1 when it was stopped. Articles, customers and
// stocks can be imported again. Throws TableError and DatabaseError, and then a file
// that was there is as it was.
long ExportTable(Connection& connection, TableFiles& files, const ExportOrder& order,
                 const ExportProgress& progress = {});

}  // namespace tpv::office
