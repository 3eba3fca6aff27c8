#include "adapters/qt/notice_band.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

#include "adapters/qt/text.h"
#include "adapters/qt/till_style.h"

namespace tpv::qt {

NoticeBand::NoticeBand(QWidget* parent, std::function<void()> seen)
    : QWidget(parent), label_(new QLabel(this)) {
  setObjectName("avisos");
  auto* layout = new QHBoxLayout(this);
  layout->setContentsMargins(20, 8, 12, 8);
  label_->setFont(Type(kTextSize));
  label_->setWordWrap(true);
  label_->setTextFormat(Qt::PlainText);
  QPalette colours = palette();
  colours.setColor(QPalette::Window, colour::kMissing);
  colours.setColor(QPalette::WindowText, colour::kText);
  setPalette(colours);
  setAutoFillBackground(true);
  auto* button = new QPushButton("Entendido", this);
  button->setFocusPolicy(Qt::NoFocus);
  layout->addWidget(label_, 1);
  layout->addWidget(button, 0, Qt::AlignTop);
  QObject::connect(button, &QPushButton::clicked, this, [this, seen = std::move(seen)] {
    seen();
    hide();
  });
  hide();
}

void NoticeBand::Show(const std::string& text) {
  const QString shown = Text(text);
  if (label_->text() == shown && isHidden() == shown.isEmpty()) return;
  label_->setText(shown);
  setAccessibleName(shown);
  setVisible(!shown.isEmpty());
}

}  // namespace tpv::qt
