// A list to choose one row from, narrowed as one types.
#pragma once

#include <QAbstractTableModel>
#include <QDialog>
#include <exception>
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
class QTimer;

namespace tpv::qt {

// The rows that the search leaves, asked for where they are painted.
class SearchModel : public QAbstractTableModel {
 public:
  SearchModel(ui::SearchRequest& request, QObject* parent);

  // Reads rows that are not there yet for a moment, or all of them. Throw what it throws.
  void ReadOn();
  void ReadAll();
  void Narrow(const QString& text);
  void SortBy(int column);
  const ui::SearchList& list() const { return list_; }

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  void Shows();

  ui::SearchList list_;
  int shown_ = 0;  // rows that the view has heard of
};

class SearchDialog : public QDialog {
 public:
  // The request, the engine and the memory outlive the dialog.
  SearchDialog(ui::SearchRequest& request, ui::Engine& engine, WindowMemory& memory, QWidget* parent);
  ~SearchDialog() override;

  bool closed() const { return closed_; }
  bool closed_by_key() const { return by_key_; }
  const std::optional<std::size_t>& chosen() const { return chosen_; }  // index into the request
  const ui::SearchList& list() const { return model_->list(); }
  QLineEdit& edit() { return *edit_; }
  QTableView& table() { return *table_; }
  QMenu* menu() const { return menu_; }

  // Reads rows that are not there yet; false when that failed, and then the dialog is closed.
  bool ReadAll();
  // Throws what the reading threw, if it did.
  void RequireRead() const;
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
  void ReadOn();
  bool Reads(void (SearchModel::*read)());
  void ShowCount();
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
  QTimer* reading_;  // while nothing else is to be done
  std::exception_ptr failure_;
};

}  // namespace tpv::qt
