#include "adapters/csv/csv_reader.h"

#include <algorithm>
#include <filesystem>

#include "adapters/csv/encoding.h"
#include "base/text.h"

namespace tpv::csv {

namespace {

constexpr std::size_t kBlock = 65536;
// What a cell and a row may hold: quotes that nobody closes end here.
constexpr std::size_t kMostBytes = 1 << 20;
constexpr std::size_t kMostCells = 1000;

bool IsLineBreak(char c) { return c == '\n' || c == '\r'; }

// The separator that the first row has most of, outside quotes; one that no text has
// where the table has a single column.
char SeparatorOf(std::string_view start) {
  constexpr std::string_view kSeparators = ";,\t";
  std::size_t counts[kSeparators.size()] = {};
  bool quoted = false;
  for (const char c : start) {
    if (c == '"') quoted = !quoted;
    if (quoted) continue;
    if (IsLineBreak(c)) break;
    const std::size_t which = kSeparators.find(c);
    if (which != std::string_view::npos) ++counts[which];
  }
  const auto most = std::max_element(counts, std::end(counts));
  return *most == 0 ? '\x1f' : kSeparators[static_cast<std::size_t>(most - counts)];
}

}  // namespace

CsvReader::CsvReader(const std::string& path) : path_(path) {
  std::error_code error;
  if (!std::filesystem::exists(path, error)) throw TableError("No existe «" + path + "»");
  if (!std::filesystem::is_regular_file(path, error))
    throw TableError("«" + path + "» no es un fichero");
  file_.open(path, std::ios::binary);
  if (!file_) throw TableError("No se puede leer «" + path + "»");
  LookThrough();
  Rewind();
}

CsvReader::~CsvReader() { csv_free(&parser_); }

// The encoding is that of the whole file; the separator that of its first row.
void CsvReader::LookThrough() {
  Utf8Check check;
  bool first = true;
  while (Fill()) {
    size_ += static_cast<double>(buffer_.size());
    check.Take(buffer_);
    if (!first) continue;
    first = false;
    if (buffer_.starts_with("\xFF\xFE") || buffer_.starts_with("\xFE\xFF")) {
      throw TableError("«" + path_ + "» está en UTF-16: guárdelo como CSV UTF-8");
    }
    if (buffer_.starts_with(kUtf8Mark)) mark_ = kUtf8Mark.size();
    const std::size_t text = std::min(buffer_.find_first_not_of("\r\n", mark_), buffer_.size());
    separator_ = SeparatorOf(std::string_view(buffer_).substr(text));
  }
  utf8_ = mark_ > 0 || check.Valid();
}

bool CsvReader::Fill() {
  buffer_.resize(kBlock);
  file_.read(buffer_.data(), static_cast<std::streamsize>(kBlock));
  if (file_.bad()) throw TableError("No se puede leer «" + path_ + "»", line_);
  buffer_.resize(static_cast<std::size_t>(file_.gcount()));
  at_ = 0;
  return !buffer_.empty();
}

void CsvReader::Rewind() {
  csv_free(&parser_);
  csv_init(&parser_, CSV_STRICT | CSV_STRICT_FINI);
  csv_set_delim(&parser_, static_cast<unsigned char>(separator_));
  file_.clear();
  file_.seekg(static_cast<std::streamoff>(mark_));
  read_ = static_cast<double>(mark_);
  buffer_.clear();
  at_ = 0;
  finished_ = false;
  line_ = began_ = 1;
  between_ = true;
  after_return_ = false;
  cells_.clear();
  rows_.clear();
}

double CsvReader::Share() const { return size_ == 0 ? 1 : std::min(1.0, read_ / size_); }

bool CsvReader::Next(TableRow& row) {
  while (rows_.empty()) {
    if (finished_) return false;
    if (at_ < buffer_.size() || Fill()) {
      FeedLine();
    } else {
      Finish();
    }
  }
  row = std::move(rows_.front());
  rows_.pop_front();
  return true;
}

void CsvReader::FeedLine() {
  const auto begin = buffer_.begin() + static_cast<std::ptrdiff_t>(at_);
  auto end = std::find_if(begin, buffer_.end(), IsLineBreak);
  const bool broken = end != buffer_.end();
  if (broken) ++end;
  const std::string_view piece(buffer_.data() + at_, static_cast<std::size_t>(end - begin));
  at_ += piece.size();
  read_ += static_cast<double>(piece.size());
  if (between_) began_ = line_;
  between_ = between_ && piece.find_first_not_of(" \t\r\n") == std::string_view::npos;
  Feed(piece);
  // A return and a line feed are one break.
  if (broken && !(piece == "\n" && after_return_)) ++line_;
  after_return_ = piece.back() == '\r';
}

void CsvReader::Feed(std::string_view piece) {
  if (csv_parse(&parser_, piece.data(), piece.size(), &CsvReader::OnCell, &CsvReader::OnRow,
                this) != piece.size()) {
    Fail(csv_error(&parser_) == CSV_EPARSE
             ? "las comillas no están bien puestas: una celda que las lleva va entre comillas y "
               "las suyas, dobles"
             : "no queda memoria");
  }
  if (parser_.entry_pos > kMostBytes || cells_.size() > kMostCells) {
    Fail("la fila es demasiado larga; puede que falten unas comillas de cierre");
  }
}

void CsvReader::Finish() {
  if (csv_fini(&parser_, &CsvReader::OnCell, &CsvReader::OnRow, this) != 0)
    Fail("faltan las comillas de cierre");
  finished_ = true;
}

void CsvReader::OnCell(void* bytes, std::size_t size, void* reader) {
  static_cast<CsvReader*>(reader)->TakeCell({static_cast<const char*>(bytes), size});
}

void CsvReader::OnRow(int, void* reader) { static_cast<CsvReader*>(reader)->TakeRow(); }

void CsvReader::TakeCell(std::string_view bytes) {
  cells_.push_back(utf8_ ? ValidUtf8(bytes) : FromWindows1252(bytes));
}

void CsvReader::TakeRow() {
  rows_.push_back({began_, std::move(cells_)});
  cells_.clear();
  between_ = true;
}

void CsvReader::Fail(const char* reason) const { throw TableError(reason, began_); }

}  // namespace tpv::csv
