// A field of an office form, declared as a row of a table: what is asked, what is
// accepted and what it is for.
#pragma once

#include <stdexcept>
#include <string>

namespace tpv::office {

enum class Asks {
  Text,
  Whole,
  Amount,  // a decimal comma
  Date,
  Flag,    // a check box
  Choice,  // an entry of a list, stored as the code before its " - "
};

struct FormField {
  const char* column;   // of the form's table, or a name of its own where the screen stores it itself
  const char* caption;
  Asks asks;
  int width = 10;       // characters; a text takes no more
  const char* help = "";  // shown while the field has the focus
  bool required = false;
  bool unique = false;  // no two records have the same
  double least = 0;     // numbers
  double most = 99'999'999;
  bool beside = false;  // stands in the row of the field before it
  const char* frame = nullptr;  // the frame's caption, on the first field of it
  int shown = 0;                // characters of a long text that are seen at once; 0: up to 50
};

// A field that does not hold what it must.
class FieldFault : public std::runtime_error {
 public:
  // `reason` in Spanish with what would be accepted; an empty column is about the whole form.
  FieldFault(std::string column, const std::string& reason)
      : std::runtime_error(reason), column_(std::move(column)) {}
  const std::string& column() const { return column_; }

 private:
  std::string column_;
};

}  // namespace tpv::office
