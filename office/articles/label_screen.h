// Labels with price and bar code for the articles that are ticked, on A4 sheets.
#pragma once

#include <map>
#include <memory>
#include <set>

#include "office/tools.h"
#include "platform/label_press.h"
#include "screen/screen.h"
#include "screen/search_list.h"

namespace tpv::office {

class LabelScreen : public Screen {
 public:
  LabelScreen(Context& context, const Tools& tools);

  void OnLoad() override;
  void OnKeyUp(ui::Key key) override;
  bool TakesScans() const override { return true; }
  ui::TextBox* FieldForScan() override { return &Text1[kSearch]; }

 private:
  enum Field { kSearch, kCopies, kFirst };

  void Narrow();
  void Fill();
  void Tick(int row);
  void TickAll(bool on);
  void Count();
  bool CheckFields();
  std::vector<Label> Labels() const;
  void Make();

  const Tools& tools_;
  ui::SearchRequest articles_;
  std::unique_ptr<ui::SearchList> found_;
  std::string narrowed_by_;
  std::set<std::int32_t> ticked_;
  ui::TextBoxes Text1{*this, "Text1"};
  ui::ComboBox cboHoja{*this, "cboHoja", "Hoja"};
  ui::Frame Frame1{*this, "Frame1"};
  ui::ListView lstArticulos{*this, "lstArticulos"};
  ui::Label lblCuenta{*this, "lblCuenta"};
  ui::Button cmdTodos{*this, "cmdTodos", "&Marcar lo buscado"};
  ui::Button cmdNinguno{*this, "cmdNinguno", "&Quitar marcas"};
  ui::Button cmdHacer{*this, "cmdHacer", "&Hacer etiquetas"};
  ui::Button cmdCerrar{*this, "cmdCerrar", "Cerrar"};
};

}  // namespace tpv::office
