// The notices under a window's status band. They take no key and no focus: whoever types
// or scans goes on, and reads them when there is time.
#pragma once

#include <QWidget>
#include <functional>
#include <string>

class QLabel;

namespace tpv::qt {

class NoticeBand : public QWidget {
 public:
  // `seen` runs when the operator clicks that they are read.
  NoticeBand(QWidget* parent, std::function<void()> seen);
  // Hides itself while there is nothing to say.
  void Show(const std::string& text);

 private:
  QLabel* label_;
};

}  // namespace tpv::qt
