// Reads rows one by one: the parser is given a line at a time, so that a row knows
// where it began and nothing but a row is kept.
#pragma once

#include <csv.h>

#include <deque>
#include <fstream>

#include "platform/table_file.h"

namespace tpv::csv {

class CsvReader : public TableReader {
 public:
  explicit CsvReader(const std::string& path);
  ~CsvReader() override;
  CsvReader(const CsvReader&) = delete;
  CsvReader& operator=(const CsvReader&) = delete;

  bool Next(TableRow& row) override;
  void Rewind() override;
  double Share() const override;

 private:
  void LookThrough();
  bool Fill();
  void FeedLine();
  void Feed(std::string_view piece);
  void Finish();
  static void OnCell(void* bytes, std::size_t size, void* reader);
  static void OnRow(int, void* reader);
  void TakeCell(std::string_view bytes);
  void TakeRow();
  [[noreturn]] void Fail(const char* reason) const;

  std::string path_;
  std::ifstream file_;
  double size_ = 0;
  double read_ = 0;
  std::size_t mark_ = 0;  // bytes of UTF-8's mark
  bool utf8_ = true;
  char separator_ = ';';

  csv_parser parser_{};
  std::string buffer_;
  std::size_t at_ = 0;  // the first byte of the buffer that is not parsed
  bool finished_ = false;
  long line_ = 1;        // where the next piece begins
  long began_ = 1;       // where the row being read did
  bool between_ = true;  // no row is being read
  bool after_return_ = false;
  std::vector<std::string> cells_;
  std::deque<TableRow> rows_;
};

}  // namespace tpv::csv
