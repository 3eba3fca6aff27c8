// The form of a new customer: code, names, document and address.
#pragma once

#include "screen/screen.h"

namespace tpv::suite {

class CustomerForm : public Screen {
 public:
  explicit CustomerForm(Context& ctx);

  // Id and code of the customer stored, 0 while none is.
  std::int32_t StoredId() const { return stored_id_; }
  std::int32_t Stored() const { return stored_; }

  void OnLoad() override;

 private:
  enum Field { kCode, kName, kSurname1, kSurname2, kDocument, kStreet, kNumber, kPostCode, kTown };

  bool Check();
  void RequireFreeCode();
  void Accept();
  void Store();
  std::int32_t Insert(RowBuilder& row, const char* last_id);

  ui::TextBoxes Text1{*this, "Text1"};
  ui::ComboBox cboTipoVia{*this, "cboTipoVia", "Tipo de vía"};
  ui::ComboBox cboProvincias{*this, "cboProvincias", "Provincia"};
  ui::Frame Frame1{*this, "Frame1", "Cliente"};
  ui::Frame Frame2{*this, "Frame2", "Dirección"};
  ui::Button cmdAceptar{*this, "cmdAceptar", "&Aceptar"};
  ui::Button cmdCancelar{*this, "cmdCancelar", "&Cancelar"};
  std::int32_t stored_id_ = 0;
  std::int32_t stored_ = 0;
};

}  // namespace tpv::suite
