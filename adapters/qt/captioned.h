// A field under its caption.
#pragma once

#include <QLabel>
#include <QWidget>

namespace tpv::qt {

class Captioned : public QWidget {
 public:
  // Takes the field over.
  Captioned(QWidget* parent, QWidget* field, Qt::Alignment alignment);
  void SetCaption(const QString& caption);

 private:
  QLabel* label_;
};

}  // namespace tpv::qt
