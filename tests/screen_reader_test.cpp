// What somebody who cannot see the windows is told of them.
#include <QAccessible>
#include <QApplication>
#include <set>

#include "adapters/qt/text.h"
#include "tests/windows_till.h"

namespace tpv::qt {
namespace {

class Counter : public ui::Form {
 public:
  Counter() : Form("frmCaja") {
    caption = "Cobro";
    rows = {{&code, &name, &mode}};
  }
  std::vector<ui::StatusItem> Status() const override {
    return {{"Caja", "2 · abierta", ui::StatusItem::Tone::Good}};
  }
  ui::TextBoxes fields{*this, "Text1"};
  ui::TextBox &code = fields.Add(0, "Cliente"), &name = fields.Add(1, "");
  ui::ComboBox mode{*this, "cboModo", "Modo de cobro"};
};

// "role/name" of everything in the tree.
void Tell(QAccessibleInterface* found, std::set<std::string>& told) {
  if (found == nullptr) return;
  told.insert(std::to_string(found->role()) + "/" + Utf8(found->text(QAccessible::Name)));
  for (int i = 0; i < found->childCount(); ++i) Tell(found->child(i), told);
}

TEST_F(WindowsTest, AScreenReaderFindsWhatTheEyeFinds) {
  Counter counter;
  std::set<std::string> told;
  driver.steps = {[&] {
    for (QWidget* window : QApplication::topLevelWidgets()) {
      if (window->isVisible()) Tell(QAccessible::queryAccessibleInterface(window), told);
    }
  }};
  windows.SetDriver(driver);
  windows.ShowModal(counter);
  const auto has = [&](QAccessible::Role role, const char* name) {
    return told.contains(std::to_string(role) + "/" + name);
  };
  EXPECT_TRUE(has(QAccessible::Window, "Cobro"));
  EXPECT_TRUE(has(QAccessible::StatusBar, "Caja: 2 · abierta"));
  EXPECT_TRUE(has(QAccessible::EditableText, "Cliente"));
  EXPECT_TRUE(has(QAccessible::EditableText, "Cliente: nombre"));
  EXPECT_TRUE(has(QAccessible::ComboBox, "Modo de cobro"));
}

TEST_F(WindowsTest, AScreenReaderWalksTheColumnsThatTheEyeSees) {
  Play({[&] {
    QAccessibleInterface* list = QAccessible::queryAccessibleInterface(windows.TopWindow()->ViewOf(form.goods)->Target());
    QAccessibleTableInterface* table = list->tableInterface();
    ASSERT_NE(table, nullptr);
    EXPECT_EQ(table->columnCount(), 1);  // the id is hidden
    EXPECT_EQ(table->rowCount(), 300);
    EXPECT_EQ(list->childCount(), 301);
    EXPECT_EQ(Utf8(list->child(0)->text(QAccessible::Name)), "Articulo");
    EXPECT_EQ(list->child(0)->role(), QAccessible::ColumnHeader);
    QAccessibleInterface* cell = table->cellAt(7, 0);
    EXPECT_EQ(list->child(8), cell);
    EXPECT_EQ(list->indexOfChild(cell), 8);
    EXPECT_EQ(Utf8(cell->text(QAccessible::Name)), "Articulo 7");
    ASSERT_EQ(cell->childCount(), 1);
    EXPECT_EQ(cell->child(0)->role(), QAccessible::Button);
    EXPECT_EQ(Utf8(cell->child(0)->text(QAccessible::Name)), "Articulo Articulo 7: abrir");
    cell->child(0)->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(form.pressed, std::vector<std::string>{"cell 7"});
    EXPECT_TRUE(cell->state().selected);
    EXPECT_EQ(table->selectedRows(), QList<int>{7});
    QAccessibleInterface* mark = QAccessible::queryAccessibleInterface(windows.TopWindow()->ViewOf(form.marks)->Target());
    mark->tableInterface()->cellAt(1, 0)->actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
    EXPECT_TRUE(form.marks.items[1].checked);
    EXPECT_TRUE(mark->tableInterface()->cellAt(1, 0)->state().checked);
    form.goods.rows.resize(3);
    windows.Refresh();
    EXPECT_FALSE(cell->isValid());
    EXPECT_EQ(table->cellAt(3, 0), nullptr);
  }});
}

}  // namespace
}  // namespace tpv::qt
