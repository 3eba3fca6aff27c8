#include "adapters/files/paper_document.h"

#include <charconv>

#include "base/text.h"

namespace tpv {

namespace {

constexpr std::string_view kTicket = "ticket\n";
constexpr std::string_view kSheets = "hojas\n";
constexpr std::string_view kRaw = "bytes\n";
constexpr std::string_view kEnd = "fin\n";

[[noreturn]] void Fail() { throw PrintError("El documento guardado no se entiende"); }

// Reads back to the same number.
std::string Exact(double number) {
  char digits[32];
  return {digits, std::to_chars(digits, digits + sizeof digits, number).ptr};
}

std::string LineText(const PageLine& line) {
  return Exact(line.y) + " " + Exact(line.points) + (line.bold ? " b" : " n") + (line.code ? "c " : "t ") +
         (line.code ? line.code->text : line.text) + "\n";
}

std::string PageText(const TicketPage& page) {
  std::string text(kTicket);
  text += page.family + "\n" + Exact(page.length) + "\n";
  for (const PageLine& line : page.lines) text += LineText(line);
  return text.append(kEnd);
}

// The text up to the mark, which goes off the rest with it.
std::string_view Take(std::string_view& rest, char mark) {
  const std::size_t end = rest.find(mark);
  if (end == std::string_view::npos) Fail();
  const std::string_view taken = rest.substr(0, end);
  rest.remove_prefix(end + 1);
  return taken;
}

double TakeNumber(std::string_view& rest, char mark) {
  const std::string_view digits = Take(rest, mark);
  double number = 0;
  const auto read = std::from_chars(digits.data(), digits.data() + digits.size(), number);
  if (read.ec != std::errc() || read.ptr != digits.data() + digits.size()) Fail();
  return number;
}

PageLine ReadLine(std::string_view& rest, const CodeEncoder& codes) {
  PageLine line;
  line.y = TakeNumber(rest, ' ');
  line.points = TakeNumber(rest, ' ');
  const std::string_view kind = Take(rest, ' ');
  if (kind.size() != 2) Fail();
  line.bold = kind[0] == 'b';
  const std::string text(Take(rest, '\n'));
  if (kind[1] == 'c')
    line.code = codes.Encode(text);
  else
    line.text = text;
  return line;
}

TicketPage ReadPage(std::string_view rest, const CodeEncoder& codes) {
  TicketPage page;
  page.family = Take(rest, '\n');
  page.length = TakeNumber(rest, '\n');
  while (rest != kEnd) page.lines.push_back(ReadLine(rest, codes));
  return page;
}

}  // namespace

std::string KeptContent(const PaperDocument& document) {
  if (const auto* page = std::get_if<TicketPage>(&document.content)) return PageText(*page);
  if (const auto* sheets = std::get_if<SheetsPdf>(&document.content)) return std::string(kSheets) + sheets->bytes;
  return std::string(kRaw) + std::get<RawBytes>(document.content).bytes;
}

PaperDocument DocumentOf(std::string title, std::string_view kept, const CodeEncoder& codes) {
  const auto behind = [&](std::string_view kind) { return kept.substr(kind.size()); };
  if (kept.starts_with(kTicket)) return {std::move(title), ReadPage(behind(kTicket), codes)};
  if (kept.starts_with(kSheets)) return {std::move(title), SheetsPdf{std::string(behind(kSheets))}};
  if (kept.starts_with(kRaw)) return {std::move(title), RawBytes{std::string(behind(kRaw))}};
  Fail();
}

}  // namespace tpv
