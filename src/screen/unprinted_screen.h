// The documents that no printer printed: to print after all, elsewhere if need be, or to
// be forgotten.
#pragma once

#include <vector>

#include "platform/print_outbox.h"
#include "screen/screen.h"

namespace tpv {

class FrmSinImprimir : public Screen {
 public:
  // The outbox outlives the screen.
  FrmSinImprimir(Context& context, PrintOutbox& outbox);

  void OnLoad() override;

 private:
  void DeclareLayout();
  void OfferPrinters();
  // Lists again and shows what is chosen then.
  void List();
  void ShowChosen();
  const UnprintedDocument* Chosen() const;
  void Print();
  void Forget();
  template <typename Act>
  void WithChosen(Act act);

  PrintOutbox& outbox_;
  ui::Frame Frame1{*this, "Frame1", "Documentos"};
  ui::ListView ListView1{*this, "ListView1"};
  ui::ComboBox cboImpresora{*this, "cboImpresora", "Impresora"};
  ui::Label lblAviso{*this, "lblAviso"};
  ui::Button cmdImprimir{*this, "cmdImprimir", "&Imprimir"};
  ui::Button cmdOlvidar{*this, "cmdOlvidar", "&Olvidar"};
  ui::Button cmdSalir{*this, "cmdSalir", "&Salir"};

  std::vector<UnprintedDocument> documents_;  // as listed
};

// Opens it where there is something to see, and says so where there is not.
void ShowUnprinted(Context& context);

}  // namespace tpv
