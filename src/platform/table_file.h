// Tables of texts in files, as spreadsheets write and read them.
#pragma once

#include <memory>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

namespace tpv {

// A file that cannot be read or written; what() is readable by an operator.
class TableError : public std::runtime_error {
 public:
  explicit TableError(const std::string& text, long line = 0)
      : std::runtime_error(text), line_(line) {}
  long line() const { return line_; }  // from 1; 0 for the file as a whole

 private:
  long line_;
};

struct TableRow {
  long line = 0;  // of the file where it begins, from 1
  // UTF-8; a byte that the file's encoding does not have is U+FFFD.
  std::vector<std::string> cells;
};

class TableReader {
 public:
  virtual ~TableReader() = default;
  // Reads the next row into `row`, passing over empty lines; false at the end. A row
  // is all that is kept of the file. Throws TableError.
  virtual bool Next(TableRow& row) = 0;
  // Starts again with the first row of the same file.
  virtual void Rewind() = 0;
  virtual double Share() const = 0;  // of the file read, 0 to 1
};

class TableWriter {
 public:
  virtual ~TableWriter() = default;
  // Throws TableError, as Finish does.
  virtual void Write(std::span<const std::string> cells) = 0;
  // The file appears under its name, replacing one that was there. Without it
  // nothing does.
  virtual void Finish() = 0;
};

class TableFiles {
 public:
  virtual ~TableFiles() = default;
  // Both throw TableError.
  virtual std::unique_ptr<TableReader> Open(const std::string& path) = 0;
  virtual std::unique_ptr<TableWriter> Create(const std::string& path) = 0;
  // The whole path of what a person calls a file: a name alone lies where the reports do.
  virtual std::string PathOf(const std::string& name) const { return name; }
  virtual bool Exists(const std::string& /*path*/) const { return false; }
};

}  // namespace tpv
