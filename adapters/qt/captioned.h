// A field under its caption. The caption is painted here: a label and a layout of
// their own for each of a form's fields would cost more than the field.
#pragma once

#include <QWidget>

namespace tpv::qt {

class Captioned : public QWidget {
 public:
  Captioned(QWidget* parent, Qt::Alignment alignment);
  // The field, a child made for this one. Once, before anything is shown.
  void Hold(QWidget& field);
  // `marked` is the caption with its access key marked by "&".
  void SetCaption(const QString& caption, const QString& marked);
  bool CaptionFits() const { return caption_width_ <= width(); }
  const QWidget& field() const { return *field_; }

  QSize sizeHint() const override { return UnderCaption(FieldSize()); }
  QSize minimumSizeHint() const override {
    return UnderCaption(field_->minimumSizeHint().expandedTo(field_->minimumSize()));
  }

 protected:
  void paintEvent(QPaintEvent*) override;
  void resizeEvent(QResizeEvent*) override { PlaceField(); }
  bool event(QEvent* event) override;

 private:
  QSize FieldSize() const { return field_->sizeHint().expandedTo(field_->minimumSize()); }
  QSize UnderCaption(const QSize& field) const;
  void PlaceField();

  QWidget* field_ = nullptr;
  Qt::Alignment alignment_;
  QString caption_;
  QString marked_;
  int caption_width_ = 0;
  int caption_height_ = 0;
};

}  // namespace tpv::qt
