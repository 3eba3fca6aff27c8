#include "adapters/csv/csv_files.h"

#include "adapters/csv/csv_reader.h"
#include "adapters/csv/csv_writer.h"

namespace tpv {

std::unique_ptr<TableReader> CsvFiles::Open(const std::string& path) {
  return std::make_unique<csv::CsvReader>(path);
}

std::unique_ptr<TableWriter> CsvFiles::Create(const std::string& path) {
  return std::make_unique<csv::CsvWriter>(path);
}

}  // namespace tpv
