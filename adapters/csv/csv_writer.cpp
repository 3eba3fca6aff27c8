#include "adapters/csv/csv_writer.h"

#include <csv.h>
#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>

#include "adapters/csv/encoding.h"

namespace tpv::csv {

namespace {

constexpr char kSeparator = ';';

bool NeedsQuotes(const std::string& cell) {
  return cell.find_first_of(";\"\t\r\n") != std::string::npos || cell.starts_with(' ') ||
         cell.ends_with(' ');
}

void AppendQuoted(std::string& line, const std::string& cell) {
  const std::size_t before = line.size();
  line.resize(before + 2 * cell.size() + 2);
  line.resize(before +
              csv_write(line.data() + before, line.size() - before, cell.data(), cell.size()));
}

}  // namespace

CsvWriter::CsvWriter(const std::string& path) : path_(path), partial_(path + ".parcial") {
  std::error_code error;
  if (std::filesystem::exists(path, error) && !std::filesystem::is_regular_file(path, error)) {
    throw TableError("«" + path + "» no es un fichero: escriba el nombre de uno");
  }
  ::unlink(partial_.c_str());  // what an interrupted export left
  const int file = ::open(partial_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
  if (file < 0) Fail();
  file_.reset(::fdopen(file, "w"));
  Put(kUtf8Mark);
}

CsvWriter::~CsvWriter() {
  if (file_) ::unlink(partial_.c_str());
}

void CsvWriter::Write(std::span<const std::string> cells) {
  line_.clear();
  for (const std::string& cell : cells) {
    if (&cell != cells.data()) line_ += kSeparator;
    if (NeedsQuotes(cell) || (cells.size() == 1 && cell.empty())) {
      AppendQuoted(line_, cell);
    } else {
      line_ += cell;
    }
  }
  Put(line_ += "\r\n");
}

void CsvWriter::Put(std::string_view bytes) {
  if (std::fwrite(bytes.data(), 1, bytes.size(), file_.get()) != bytes.size()) Fail();
}

void CsvWriter::Finish() {
  if (std::fflush(file_.get()) != 0 || ::fsync(::fileno(file_.get())) != 0) Fail();
  if (::rename(partial_.c_str(), path_.c_str()) != 0) Fail();
  file_.reset();
}

void CsvWriter::Fail() const {
  throw TableError("No se puede escribir «" + path_ + "»" +
                   (errno == ENOSPC   ? ": no queda sitio en el disco"
                    : errno == EACCES ? ": no hay permiso"
                    : errno == ENOENT ? ": no existe la carpeta"
                                      : ""));
}

}  // namespace tpv::csv
