// An invoice on A4: seller and buyer, lines by ticket, taxes by rate, due dates.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "context/database_object.h"
#include "platform/database.h"
#include "platform/ports.h"
#include "platform/report.h"

namespace tpv::suite {

class InvoicePaper {
 public:
  // Reads the stored invoice; throws ObjectError when there is none. The database
  // outlives the paper.
  InvoicePaper(DatabaseObject& database, std::int32_t invoice_id);

  const Report& Content() const { return report_; }
  // On the printer chosen by the user when it is installed, shown as a PDF
  // otherwise, and also when it is known at once that the printer cannot, which the
  // operator is told of. Returns the PDF's path, "" when it was printed. Throws
  // PrintError when neither goes.
  std::string Print(const Ports& ports) const;

 private:
  void ReadHeader(std::int32_t invoice_id);
  void ReadSeller();
  void ReadCode(std::int32_t invoice_id);
  std::vector<std::string> Buyer(const Recordset& header);
  std::string Name(const char* statement, const std::string& code);
  ReportTable Lines();
  ReportTable Taxes();
  ReportTable DueDates();
  std::unique_ptr<Recordset> Read(const char* select, const char* order);

  DatabaseObject& database_;
  std::string id_;
  std::string file_name_;
  double total_ = 0;
  std::string observations_;
  Report report_;
};

}  // namespace tpv::suite
