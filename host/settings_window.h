// What belongs to this machine: its till and drawer, printers, mail, sounds and safety
// copies, each with a button to try it. What `tpv config` sets.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "office/list_editor.h"
#include "office/paged_window.h"
#include "platform/ports.h"

namespace tpv {

class SettingsWindow : public office::PagedWindow {
 public:
  // The ports outlive the window.
  explicit SettingsWindow(const Ports& ports);

  // Unset where no shop is open, or it has no copies of this machine's.
  std::function<void()> open_drawer;
  std::function<std::string()> make_copy;

  void OnLoad() override;

 private:
  struct Change {
    std::string setting;
    std::string value;  // "" takes it away
    ui::Control* control;
    std::string label;  // as the operator reads it
  };

  void DeclareFields();
  void DeclarePages();
  void Show();
  void OfferPrinters();
  std::string Typed(const std::string& setting) const;
  std::vector<Change> Changes() const;
  void AddListChanges(const char* section, const office::ListEditor& list, std::size_t column,
                      std::vector<Change>& changes) const;
  bool Store();
  void Try(const std::function<std::string()>& trial);
  std::string TryPrinter();
  std::string TryMail();

  const Ports ports_;
  std::map<std::string, ui::Control*> controls_;  // by setting

  ui::TextBoxes Text1{*this, "Text1"};
  ui::ComboBox cboCajon{*this, "cboCajon", "Cómo se abre el cajón"};
  ui::ComboBox cboImpresora{*this, "cboImpresora", "Impresora de los tickets"};
  ui::ComboBox cboSeguridad{*this, "cboSeguridad", "Cifrado"};
  office::ListEditor devices_;
  office::ListEditor printers_;
  ui::Button cmdProbarCajon{*this, "cmdProbarCajon", "Abrir el ca&jón"};
  ui::Button cmdProbarImpresora{*this, "cmdProbarImpresora", "&Imprimir una prueba"};
  ui::Button cmdProbarCorreo{*this, "cmdProbarCorreo", "&Enviar una prueba"};
  ui::Button cmdProbarSonido{*this, "cmdProbarSonido", "Hacer s&onar"};
  ui::Button cmdProbarCopia{*this, "cmdProbarCopia", "&Hacer una copia ahora"};
  ui::Button cmdCarpeta{*this, "cmdCarpeta", "&Buscar…"};
  ui::Button cmdAceptar{*this, "cmdAceptar", "&Guardar"};
  ui::Button cmdCancelar{*this, "cmdCancelar", "&Cerrar"};
  ui::Label lblPrueba{*this, "lblPrueba", "Las pruebas guardan antes lo escrito."};
};

}  // namespace tpv
