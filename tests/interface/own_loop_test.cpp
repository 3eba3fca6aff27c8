// A host with a Qt user interface of its own: the till's screens come and go in it
// and leave it as it was.
#include <gtest/gtest.h>

#include <QApplication>
#include <QPushButton>
#include <QStyle>
#include <QTimer>
#include <thread>

#include "test_host.h"

namespace {

class OwnLoop : public TestHost {
 protected:
  std::int32_t CreateWindows(zrtpv_till** made) {
    zrtpv_options options = Options();
    options.windows = ZRTPV_WINDOWS;
    return zrtpv_create(&options, made);
  }
};

// What was open when the timer of the host's loop fired.
struct Seen {
  int screens = 0;
  bool own_style = false;
};

void LookAndClose(Seen& seen) {
  for (QWidget* window : QApplication::topLevelWidgets()) {
    if (!window->isVisible() || window->objectName() == "host") continue;
    ++seen.screens;
    const QWidget* button = window->findChild<QPushButton*>();
    seen.own_style = button != nullptr && button->style() != QApplication::style();
    window->close();
  }
}

TEST_F(OwnLoop, IsNotDisturbed) {
  int count = 1;
  char name[] = "host";
  char* arguments[] = {name, nullptr};
  QApplication application(count, arguments);
  QPushButton host("host");
  host.setObjectName("host");
  const QString style = QApplication::style()->objectName();
  const QPalette palette = QApplication::palette();
  const QFont font = QApplication::font();

  ASSERT_EQ(CreateWindows(&till), ZRTPV_OK) << zrtpv_error();
  ASSERT_EQ(zrtpv_open_file(till, (folder / "t.db").c_str(), ZRTPV_MAKE_DEMO, 1), ZRTPV_OK);
  Seen seen;
  bool ended = false;
  QObject::connect(&application, &QGuiApplication::lastWindowClosed, [&] { ended = true; });
  QTimer timer;
  QObject::connect(&timer, &QTimer::timeout, [&] { LookAndClose(seen); });
  timer.start(50);
  EXPECT_EQ(zrtpv_call(till, "zInfPendienteCobro", nullptr, 0, nullptr), ZRTPV_OK) << zrtpv_error();
  EXPECT_GE(seen.screens, 1);
  EXPECT_TRUE(seen.own_style);
  EXPECT_FALSE(ended);
  EXPECT_EQ(QApplication::style()->objectName(), style);
  EXPECT_EQ(QApplication::palette(), palette);
  EXPECT_EQ(QApplication::font(), font);
  EXPECT_EQ(host.style(), QApplication::style());
  EXPECT_EQ(zrtpv_play(till, "call zTpv", nullptr), ZRTPV_E_WINDOWS);

  std::thread([this] {
    zrtpv_till* other = nullptr;
    EXPECT_EQ(CreateWindows(&other), ZRTPV_E_WINDOWS);
  }).join();
  EXPECT_EQ(zrtpv_release(till), ZRTPV_OK);
  till = nullptr;
  EXPECT_EQ(QCoreApplication::instance(), &application);
}

TEST_F(OwnLoop, AProgramWithoutQtGetsAnApplicationWhileItHasWindows) {
  ASSERT_EQ(CreateWindows(&till), ZRTPV_OK) << zrtpv_error();
  zrtpv_till* second = nullptr;
  ASSERT_EQ(CreateWindows(&second), ZRTPV_OK) << zrtpv_error();
  EXPECT_NE(QCoreApplication::instance(), nullptr);
  EXPECT_EQ(zrtpv_release(till), ZRTPV_OK);
  till = nullptr;
  EXPECT_NE(QCoreApplication::instance(), nullptr);
  EXPECT_EQ(zrtpv_release(second), ZRTPV_OK);
  EXPECT_EQ(QCoreApplication::instance(), nullptr);
}

}  // namespace
