// Writes what a shop has into files for spreadsheets.
#pragma once

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

// Writes the file and returns its rows. Articles, customers and stocks can be imported
// again. Throws TableError, DatabaseError and what a pulse throws, and then a file that
// was there is as it was.
long ExportTable(Connection& connection, TableFiles& files, const ExportOrder& order);

}  // namespace tpv::office
