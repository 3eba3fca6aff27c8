// The form toolkit: search dialog, key filter, dates, rounding, focus colours.
#pragma once

#include "context/form_toolkit.h"

namespace tpv {
class Clock;
namespace ui {
class FrontEnd;
}
}  // namespace tpv

namespace tpv::suite {

class Toolkit : public FormToolkit {
 public:
  // Both ports outlive the toolkit.
  Toolkit(ui::FrontEnd& front_end, const Clock& clock) : front_end_(front_end), clock_(clock) {}

  void SetConexion(Connection& connection) override { connection_ = &connection; }
  void SetFocusColours(std::uint32_t focused, std::uint32_t plain) override;
  std::uint32_t FocusedColour() const override { return focused_; }
  std::uint32_t PlainColour() const override { return plain_; }
  std::string BuscarPorNombre(const NameSearch& search) override;
  double Redondear(double value, int decimals) const override;
  std::string ValidarFecha(std::string_view text) const override;
  char32_t FiltrarTecla(std::string_view text, char32_t key, FieldKind kind) const override;
  std::string FormatearImporte(std::string_view text) const override;

 private:
  ui::FrontEnd& front_end_;
  const Clock& clock_;
  Connection* connection_ = nullptr;
  std::uint32_t focused_ = kFocusColour;
  std::uint32_t plain_ = kPlainColour;
};

}  // namespace tpv::suite
