// The first row of a file: which of the known columns it has, and where.
#pragma once

#include <span>
#include <string>
#include <vector>

#include "office/refusal.h"
#include "platform/table_file.h"

namespace tpv::office {

class Heading {
 public:
  // The row's columns are among `known`, in any order, whatever their case and accents.
  // Refuses what is unknown or there twice.
  Heading(const TableRow& row, std::span<const std::string> known, Refusals& refusals);

  bool Has(const std::string& name) const { return IndexOf(name) >= 0; }
  // The cell of that column; "" where the column or the row's end is missing.
  const std::string& Cell(const TableRow& row, const std::string& name) const;
  // The beginning of all other cells that are not empty: "Pan de pueblo · 2,40 · 20".
  std::string CellsBeside(const TableRow& row, const std::string& name) const;
  std::size_t size() const { return names_.size(); }

 private:
  int IndexOf(const std::string& name) const;

  std::vector<std::string> names_;
};

}  // namespace tpv::office
