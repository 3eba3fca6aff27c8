// A shop on which one screen after the other is opened and worked.
#pragma once

#include <memory>
#include <string>

#include "adapters/sqlite/sqlite_connection.h"
#include "context/context.h"
#include "panel/panel_screen.h"
#include "tests/test_shop.h"

namespace tpv::bench {

// Dates are as typed. What lists nothing is an error.
class Office : private ui::Driver {
 public:
  Office(const std::string& path, const Clock& clock);

  void SaleScreen();  // opened and left
  void Pending();     // of all customers
  void Journal(const std::string& from, const std::string& to);
  void Closures(const std::string& from, const std::string& to);
  // Opened with those days asked for; shown again and again; left.
  void OpenPanel(const std::string& from, const std::string& to);
  void ShowPanel();
  void ClosePanel();
  void Invoicing(const std::string& from, const std::string& to, bool make_invoice);

 private:
  ui::Engine& engine() { return shop_.front_end.engine(); }
  void Search(ui::Form& screen, ui::TextBox& from_box, const std::string& from, ui::TextBox& to_box,
              const std::string& to);
  void List(ui::Form& screen);
  bool Step() override;  // confirms an invoice's parameters as they come
  void OnBox(const ui::MessageBox& box) override;

  SqliteConnection connection_;
  TestShop shop_;
  Context context_{0, 1, 1, 0, shop_.database, shop_.ports};
  std::unique_ptr<FrmPanel> panel_;
};

}  // namespace tpv::bench
