// Tables as files of comma-separated values, in the ways of spreadsheets.
#pragma once

#include "platform/table_file.h"

namespace tpv {

// Reads commas, semicolons or tabs, whichever the first row has most of; UTF-8, with
// or without its mark, or Windows-1252 where the bytes are no UTF-8; line breaks of
// all systems. Writes UTF-8 with its mark and semicolons, for the user alone to read.
class CsvFiles : public TableFiles {
 public:
  std::unique_ptr<TableReader> Open(const std::string& path) override;
  std::unique_ptr<TableWriter> Create(const std::string& path) override;
};

}  // namespace tpv
