// A message box: icon, text, the buttons asked for, Enter for the default one.
#pragma once

#include <QDialog>
#include <map>
#include <optional>

#include "platform/ui/front_end.h"

class QPushButton;

namespace tpv::qt {

class MessageDialog : public QDialog {
 public:
  // The box outlives the dialog.
  MessageDialog(const ui::MessageBox& box, QWidget* parent);

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
  QWidget* Buttons();

  const ui::MessageBox& box_;
  std::map<ui::Answer, QPushButton*> buttons_;
  std::optional<ui::Answer> answer_;
  bool by_key_ = false;
};

}  // namespace tpv::qt
