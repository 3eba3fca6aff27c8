// A document for a receipt printer: lines at their places on a roll of paper.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "adapters/files/document_folder.h"
#include "platform/printer.h"
#include "platform/square_code.h"

namespace tpv {

struct PageLine {
  double y = 0;  // of its upper edge, in centimetres from the top
  double points = 0;
  bool bold = false;
  std::string text;  // valid UTF-8 without control characters
  std::optional<SquareCode> code{};  // instead of the text, centred in the columns
};

struct TicketPage {
  std::string family = "Courier New";
  std::vector<PageLine> lines;
  double length = 0;  // centimetres, with the lines fed at the end
};

// Of a line of text in that size, in centimetres; of whatever stands in the line.
double LineHeight(double points);
double HeightOf(const PageLine& line);

// The page as a printer that only knows lines sees it: lines at the places that
// come nearest, with empty ones between and behind them.
struct TextRow {
  std::string text;  // a code's own text where there is one
  bool bold = false;
  const SquareCode* code = nullptr;  // the page's
};
std::vector<TextRow> RowsOf(const TicketPage& page);
std::string PlainText(const TicketPage& page);

// The page as files of a folder: a text and, where PDFs can be drawn, its picture.
std::vector<DocumentFolder::Part> TicketFiles(const TicketPage& page);

// Collects what is printed and hands it over at the end.
class PageRecorder : public PrintDocument {
 public:
  using Deliver = std::function<void(const TicketPage&)>;
  // The encoder outlives the recorder.
  PageRecorder(const CodeEncoder& codes, Deliver deliver)
      : codes_(codes), deliver_(std::move(deliver)) {}

  void SetFont(std::string_view family, double points, bool bold) override;
  void PrintLine(std::string_view text) override;
  void PrintCode(std::string_view text) override;
  double Y() const override { return page_.length; }
  void SetY(double centimetres) override;
  void End() override { deliver_(page_); }

 private:
  const CodeEncoder& codes_;
  Deliver deliver_;
  TicketPage page_;
  double points_ = 9;
  bool bold_ = false;
};

}  // namespace tpv
