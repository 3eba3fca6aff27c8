#include "adapters/qt/manual_window.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QKeyEvent>
#include <QStandardPaths>
#include <QVBoxLayout>

#include "adapters/qt/till_style.h"

namespace tpv::qt {

namespace {

constexpr QSize kManualSize(780, 680);
constexpr int kPageMargin = 40;

// A picture of a whole window is no wider than the page.
class Pages : public QTextBrowser {
 public:
  using QTextBrowser::QTextBrowser;
  QVariant loadResource(int type, const QUrl& name) override {
    QVariant found = QTextBrowser::loadResource(type, name);
    if (type != QTextDocument::ImageResource) return found;
    const QImage picture = QImage::fromData(found.toByteArray());
    const int room = viewport()->width() - kPageMargin;
    return picture.width() > room ? picture.scaledToWidth(room, Qt::SmoothTransformation) : picture;
  }
};

// What belongs to reading: everything else is meant for the till.
bool TurnsPages(const QKeyEvent& key) {
  switch (key.key()) {
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
    case Qt::Key_Home:
    case Qt::Key_End:
      return true;
    default:
      return key.modifiers() & Qt::ControlModifier;
  }
}

}  // namespace

QString ManualFile(const QString& page) {
  const QString name = page.isEmpty() ? "manual.es.md" : "manual/" + page + ".md";
  // A built tree, or wherever the program was unpacked, before what the system has.
  QDir folder(QCoreApplication::applicationDirPath());
  do {
    for (const char* place : {"share/doc/tpv/", "docs/"}) {
      QString file = folder.filePath(place + name);
      if (QFileInfo::exists(file)) return file;
    }
  } while (folder.cdUp());
  return QStandardPaths::locate(QStandardPaths::GenericDataLocation, "doc/tpv/" + name);
}

ManualWindow::ManualWindow(QWidget& screen)
    : QWidget(&screen, Qt::Window), browser_(new Pages(this)) {
  setWindowTitle("Manual");
  browser_->setFont(Type(kTextSize));
  browser_->document()->setDocumentMargin(kPageMargin / 2.0);
  browser_->installEventFilter(this);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(browser_);
  resize(kManualSize);
}

void ManualWindow::Open(const QString& file) {
  show();  // the pictures ask how wide it is
  activateWindow();
  browser_->setSource(QUrl::fromLocalFile(file), QTextDocument::MarkdownResource);
  browser_->setFocus();
}

// What is typed or scanned while the manual lies open still goes to the till.
bool ManualWindow::eventFilter(QObject*, QEvent* event) {
  const bool press = event->type() == QEvent::KeyPress;
  if (!press && event->type() != QEvent::KeyRelease) return false;
  const auto& key = static_cast<const QKeyEvent&>(*event);
  if (TurnsPages(key)) return false;
  if (key.key() == Qt::Key_Escape || key.key() == Qt::Key_F1) {
    if (press) close();
  } else {
    QCoreApplication::sendEvent(parentWidget(), event);
  }
  return true;
}

}  // namespace tpv::qt
