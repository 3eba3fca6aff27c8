// The operator's manual beside the screen that it tells of.
#pragma once

#include <QTextBrowser>
#include <QWidget>

namespace tpv::qt {

// The file of a page, "" for the contents; "" when no manual is installed.
QString ManualFile(const QString& page);

class ManualWindow : public QWidget {
 public:
  // Stands over `screen`, which it goes with.
  explicit ManualWindow(QWidget& screen);

  void Open(const QString& file);
  QString text() const { return browser_->toPlainText(); }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  QTextBrowser* browser_;
};

}  // namespace tpv::qt
