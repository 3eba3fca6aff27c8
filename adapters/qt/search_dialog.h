// A list to choose one row from, narrowed as one types.
#pragma once

#include <QAbstractTableModel>
#include <QDialog>
#include <optional>

#include "screen/engine.h"
#include "screen/search_list.h"

class QLabel;
class QLineEdit;
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
  // The request and the engine outlive the dialog.
  SearchDialog(const ui::SearchRequest& request, ui::Engine& engine, QWidget* parent);

  bool closed() const { return closed_; }
  bool closed_by_key() const { return by_key_; }
  const std::optional<std::size_t>& chosen() const { return chosen_; }  // index into the request
  const ui::SearchList& list() const { return model_->list(); }
  QLineEdit& edit() { return *edit_; }
  QTableView& table() { return *table_; }

  void reject() override;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void LayOut(const ui::SearchRequest& request);
  void SetWidths(const ui::SearchRequest& request);
  void Narrow(const QString& text);
  void SortBy(int column);
  void MoveTo(int row);
  bool Key(int key);
  bool TakeScanned(const QKeyEvent& event);
  void Choose(int row);

  ui::Engine& engine_;
  SearchModel* model_;
  QLineEdit* edit_;
  QTableView* table_;
  QLabel* count_;
  bool closed_ = false;
  bool by_key_ = false;
  std::optional<std::size_t> chosen_;
};

}  // namespace tpv::qt
