// What long work shows: what is being done, how far it is, and a way out while there
// is one. A scanner's keys do not find it.
#pragma once

#include <QDialog>

#include "platform/ui/long_work.h"
#include "screen/engine.h"

class QLabel;
class QProgressBar;
class QPushButton;

namespace tpv::qt {

class ProgressDialog : public QDialog {
 public:
  // The engine outlives the dialog.
  ProgressDialog(ui::Engine& engine, QWidget* parent);

  void Show(const ui::Progress& progress);
  bool given_up() const { return given_up_; }
  QPushButton* button() const { return button_; }

  void reject() override;  // Esc and the close box

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  ui::Engine& engine_;
  QLabel* stage_;
  QProgressBar* bar_;
  QPushButton* button_;
  bool given_up_ = false;
};

}  // namespace tpv::qt
