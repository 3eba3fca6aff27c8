// The suite's form toolkit as the screens use it: one object a screen.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace tpv {

class Connection;

// Colours as the suite writes them: 0xBBGGRR.
inline constexpr std::uint32_t kFocusColour = 65535;      // yellow
inline constexpr std::uint32_t kPlainColour = 16777215;   // white

struct NameSearch {
  std::string statement;      // first column the id, second the code, third the name
  std::string search_column;  // searched and ordered by
  std::string first_caption;
  std::string second_caption;
  std::string title;
  int first_width = 600;  // twips
  int second_width = 6000;
  int flag = 0;
  std::string leaves_out;     // the table whose retired records are not offered (data/retired.h); "": none is left out
  std::size_t id_column = 0;  // of the statement, for it
};

// What separates the columns of a chosen row.
inline constexpr char kColumnSeparator = '\x01';

enum class FieldKind { Text, Number, Date };

class FormToolkit {
 public:
  virtual ~FormToolkit() = default;

  // The connection that look-ups run on; it must outlive the toolkit.
  virtual void SetConexion(Connection& connection) = 0;
  virtual void SetFocusColours(std::uint32_t focused, std::uint32_t plain) = 0;
  virtual std::uint32_t FocusedColour() const = 0;
  virtual std::uint32_t PlainColour() const = 0;

  // Shows the search dialog. The chosen row's columns joined by
  // kColumnSeparator; "" when nothing was chosen.
  virtual std::string BuscarPorNombre(const NameSearch& search) = 0;

  virtual double Redondear(double value, int decimals) const = 0;
  // What was typed as a date shown "dd/mm/yyyy"; text that is no date comes back
  // unchanged, so that the screen's own check can refuse it.
  virtual std::string ValidarFecha(std::string_view text) const = 0;
  // The character to enter into the field instead of `key`, 0 to refuse it:
  // digits and the decimal comma (a point becomes a comma) for numbers, digits
  // and "/" for dates.
  virtual char32_t FiltrarTecla(std::string_view text, char32_t key, FieldKind kind) const = 0;
  // The text with the mask "#0.00"; unchanged when it is no number.
  virtual std::string FormatearImporte(std::string_view text) const = 0;
};

}  // namespace tpv
