// A message box: icon, text, the buttons asked for, Enter for the default one.
#pragma once

#include <QDialog>
#include <map>
#include <optional>

#include "platform/ui/front_end.h"
#include "screen/engine.h"

class QPushButton;

namespace tpv::qt {

class MessageDialog : public QDialog {
 public:
  // The box and the engine outlive the dialog.
  MessageDialog(const ui::MessageBox& box, ui::Engine& engine, QWidget* parent);

  const ui::MessageBox& box() const { return box_; }
  const std::optional<ui::Answer>& answer() const { return answer_; }
  // Whether a key gave the answer.
  bool answered_by_key() const { return by_key_; }
  QPushButton* ButtonOf(ui::Answer answer) const;  // null when it has none

  void reject() override;  // Esc and the close box: what goes on with least

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void Give(ui::Answer answer);
  bool IsScanners(const QKeyEvent& event);
  void GiveUnlessScanned(ui::Answer answer);
  QWidget* Buttons();

  const ui::MessageBox& box_;
  ui::Engine& engine_;
  std::map<ui::Answer, QPushButton*> buttons_;
  std::optional<ui::Answer> answer_;
  bool by_key_ = false;
  bool scanned_ = false;  // the letter that waited was a code's
};

}  // namespace tpv::qt
