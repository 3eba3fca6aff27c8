// Writes rows into a file that appears when it is complete.
#pragma once

#include <cstdio>
#include <memory>

#include "platform/table_file.h"

namespace tpv::csv {

class CsvWriter : public TableWriter {
 public:
  explicit CsvWriter(const std::string& path);
  ~CsvWriter() override;

  void Write(std::span<const std::string> cells) override;
  void Finish() override;

 private:
  void Put(std::string_view bytes);
  [[noreturn]] void Fail() const;

  struct Closer {
    void operator()(std::FILE* file) const { std::fclose(file); }
  };
  std::string path_;
  std::string partial_;
  std::unique_ptr<std::FILE, Closer> file_;
  std::string line_;
};

}  // namespace tpv::csv
