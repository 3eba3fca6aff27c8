// A list to choose one row from, narrowed as one types.
#pragma once

#include <QAbstractTableModel>
#include <QDialog>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "adapters/qt/window_memory.h"
#include "screen/engine.h"
#include "screen/searched_form.h"

class QLabel;
class QLineEdit;
class QMenu;
class QTableView;

namespace tpv::qt {

// The rows that the search leaves, asked for where they are painted.
class SearchModel : public QAbstractTableModel {
 public:
  SearchModel(const ui::SearchRequest& request, QObject* parent);

  void Narrow(const QString& text);
  void SortBy(int column);
  const ui::SearchList& list() const { return list_; }

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  ui::SearchList list_;
};

class SearchDialog : public QDialog {
 public:
  // The request, the engine and the memory outlive the dialog.
  SearchDialog(const ui::SearchRequest& request, ui::Engine& engine, WindowMemory& memory, QWidget* parent);
  ~SearchDialog() override;

  bool closed() const { return closed_; }
  bool closed_by_key() const { return by_key_; }
  const std::optional<std::size_t>& chosen() const { return chosen_; }  // index into the request
  const ui::SearchList& list() const { return model_->list(); }
  QLineEdit& edit() { return *edit_; }
  QTableView& table() { return *table_; }
  QMenu* menu() const { return menu_; }

  // Closes it for something that is done with its rows while it is out of sight.
  void Leave(std::function<void(ui::SearchedForm&)> errand);
  // Does that; false when it was closed for good. What the errand throws passes.
  bool RunErrand();

  void reject() override;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void LayOut(const ui::SearchRequest& request);
  void SetWidths(const ui::SearchRequest& request);
  void OpenMenu();
  std::vector<int> Widths() const;
  void Narrow(const QString& text);
  void SortBy(int column);
  void MoveTo(int row);
  bool Key(int key);
  bool TakeScanned(const QKeyEvent& event);
  void Choose(int row);

  ui::Engine& engine_;
  WindowMemory& memory_;
  SearchModel* model_;
  QLineEdit* edit_;
  QTableView* table_;
  QLabel* count_;
  bool closed_ = false;
  bool by_key_ = false;
  QMenu* menu_ = nullptr;
  std::unique_ptr<ui::SearchedForm> offered_;  // what the menu's entries are about
  std::function<void(ui::SearchedForm&)> errand_;
  std::vector<int> opened_widths_;
  std::optional<std::size_t> chosen_;
};

}  // namespace tpv::qt
