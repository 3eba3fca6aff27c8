// A4 documents laid out from plain data: lists, invoices.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/chart.h"

namespace tpv {

struct ReportColumn {
  std::string caption;
  double width = 1;  // share of the page's width
  bool right = false;
};

struct ReportRow {
  std::vector<std::string> cells;
  bool strong = false;  // a total or a group's heading
};

struct ReportTable {
  std::string caption;  // "" for none
  std::vector<ReportColumn> columns;
  std::vector<ReportRow> rows;
};

// A square code (square_code.h) between two lines of text.
struct ReportCode {
  std::string above;
  std::string text;
  std::string below;
};

struct Report {
  std::string title;
  std::vector<std::string> left;   // lines below the title: who it is from
  std::vector<std::string> right;  // and whom it is for
  std::vector<ReportTable> tables;
  std::vector<ChartData> charts;
  std::optional<ReportCode> code{};  // at the top of the first page
};

// Every page has its number and how many there are.
class ReportPress {
 public:
  virtual ~ReportPress() = default;
  // Prints on the printer so named, on the current one when "". Throws PrintError for
  // what is known at once to fail; a later failure is told with FrontEnd::Notify.
  virtual void Print(const Report& report, std::string_view printer) = 0;
  // Writes a PDF file, shows it where there is a viewer, and returns its path. Where
  // nothing can show it, FrontEnd::Notify says where it lies.
  // `name` is the file's, without folder and ending. Throws PrintError.
  virtual std::string Show(const Report& report, std::string_view name) = 0;
};

}  // namespace tpv
