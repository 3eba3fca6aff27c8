// The list of a kind of record: searched as one types, with what can be done to the
// chosen one: new, change, retire. Text1(0) is the search, lstRegistros the list.
#pragma once

#include <cstdint>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "office/forms/record_form.h"
#include "screen/search_list.h"

namespace tpv::office {

struct ListedColumn {
  const char* caption;
  int width;              // twips
  std::string mask = {};  // of a figure, which stands on the right and is not searched
};

struct RecordListing {
  const char* form;   // "frmAlmacenes"
  const char* title;  // "Almacenes"
  std::vector<ListedColumn> columns;
  const char* retires = "";  // the table whose records can be retired (data/retired.h); "" for none
};

class RecordList : public Screen {
 public:
  RecordList(Context& context, RecordListing listing);

  void OnLoad() override;
  bool OnKeyDown(ui::Key key) override;
  void OnKeyUp(ui::Key key) override;
  void OnF5() override { Read(); }
  bool TakesScans() const override { return true; }
  ui::TextBox* FieldForScan() override { return &Text1[0]; }

 protected:
  // The record's id first, then a value for each column, in the order to show.
  virtual std::string Statement() const { return {}; }
  // What it gives; and the list's rows where these are others.
  std::vector<std::vector<Variant>> Records();
  virtual ui::PackedRows Rows() { return Records(); }
  // The form of the record, a new one for 0.
  virtual std::unique_ptr<RecordForm> FormOf(std::int32_t id) = 0;
  // Why the record cannot be retired, in Spanish; "" when it can.
  virtual std::string Kept(std::int32_t /*id*/) { return {}; }
  // Buttons of the list's own, before the one that closes it.
  void AddButtons(std::vector<ui::Control*> own_buttons);
  // Reads the store again; the mark stays with its record.
  void Read();
  // The record that is marked; 0 for none.
  std::int32_t Marked() const;
  // What the mark's row shows in the column.
  std::string MarkedText(std::size_t column) const;

 private:
  void Narrow();
  void Fill(std::int32_t marked);
  void Open(std::int32_t id);
  void Change();
  void RetireOrTakeBack();
  void ShowRetirement();

  const RecordListing listing_;
  ui::SearchRequest request_;
  std::unique_ptr<ui::SearchList> found_;
  std::string narrowed_by_;
  std::set<std::int32_t> retired_;
  ui::TextBoxes Text1{*this, "Text1"};
  ui::CheckBox chkRetirados{*this, "chkRetirados", "Ver también los retirados"};
  ui::ListView lstRegistros{*this, "lstRegistros"};
  ui::Label lblCuenta{*this, "lblCuenta"};
  ui::Button cmdNuevo{*this, "cmdNuevo", "&Nuevo"};
  ui::Button cmdCambiar{*this, "cmdCambiar", "&Cambiar"};
  ui::Button cmdRetirar{*this, "cmdRetirar", "&Retirar"};
  ui::Button cmdCerrar{*this, "cmdCerrar", "Cerrar"};
};

}  // namespace tpv::office
