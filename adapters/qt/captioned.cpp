#include "adapters/qt/captioned.h"

#include <QVBoxLayout>

#include "adapters/qt/till_style.h"

namespace tpv::qt {

Captioned::Captioned(QWidget* parent, QWidget* field, Qt::Alignment alignment)
    : QWidget(parent), label_(new QLabel(this)) {
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(2);
  label_->setFont(Type(kLabelSize));
  label_->setAlignment(alignment);
  QPalette palette = label_->palette();
  palette.setColor(QPalette::Active, QPalette::WindowText, colour::kLabel);
  palette.setColor(QPalette::Inactive, QPalette::WindowText, colour::kLabel);
  label_->setPalette(palette);
  layout->addStretch(1);
  layout->addWidget(label_);
  layout->addWidget(field);
  setSizePolicy(field->sizePolicy());
}

void Captioned::SetCaption(const QString& caption) {
  if (label_->text() != caption) label_->setText(caption);
}

}  // namespace tpv::qt
