// Real windows under real keys and clicks: what no scenario can see, because
// without windows there is nothing like it.
#include <gtest/gtest.h>

#include <QApplication>
#include <QClipboard>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QScrollBar>
#include <QTimer>
#include <QToolButton>
#include <QWindow>
#include <chrono>
#include <thread>

#include "adapters/headless/recorders.h"
#include "adapters/qt/native_input.h"
#include "adapters/qt/qt_operator.h"
#include "adapters/qt/rows_view.h"
#include "adapters/qt/text.h"
#include "tests/windows_till.h"

namespace tpv::qt {
namespace {

TEST_F(WindowsTest, CaretSelectionAndClipboardReachTheModel) {
  Play({[&] {
    SendText("1235");
    Press(Qt::Key_Left);
    SendText(".4");
    EXPECT_EQ(form.price.text, "123,45");
    SendText("9");  // full
    EXPECT_EQ(form.price.text, "123,45");
    Press(Qt::Key_Home, Qt::ShiftModifier);
    EXPECT_EQ(form.price.selection_length, 5u);
    Press(Qt::Key_X, Qt::ControlModifier);
    EXPECT_EQ(form.price.text, "5");
    EXPECT_EQ(QApplication::clipboard()->text(), "123,4");
    QApplication::clipboard()->setText("8.25\nmore");
    Press(Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(form.price.text, "8,255") << "a paste goes through the key filter, one line";
    Press(Qt::Key_Backspace, Qt::NoModifier, "\b");
    EXPECT_EQ(form.price.text, "8,25") << "the caret stands behind what was pasted";
  }});
}

TEST_F(WindowsTest, TheEnterThatClosesABoxMovesNothingAndTheNextOneDoes) {
  Play({[&] { Press(Qt::Key_G, Qt::AltModifier, "g"); },
        [&] { Press(Qt::Key_Return, Qt::NoModifier, "\r"); },  // the box's
        [&] {
          EXPECT_EQ(hands.Box(), nullptr);
          EXPECT_EQ(form.focus, &form.price);
          EXPECT_EQ(form.closed_by_key, 1);
          Press(Qt::Key_Return, Qt::NoModifier, "\r");
          EXPECT_EQ(form.focus, &form.units);
        }});
}

TEST_F(WindowsTest, AKeyHeldDownActsOnce) {
  Play({[&] {
    QWindow* window = windows.TopWindow()->windowHandle();
    const auto send = [&](QEvent::Type type, bool repeat) {
      QKeyEvent event(type, Qt::Key_Return, Qt::NoModifier, "\r", repeat);
      QCoreApplication::sendEvent(window, &event);
    };
    send(QEvent::KeyPress, false);
    for (int i = 0; i < 5; ++i) {
      send(QEvent::KeyRelease, true);
      send(QEvent::KeyPress, true);
    }
    send(QEvent::KeyRelease, false);
    EXPECT_EQ(form.focus, &form.units);
  }});
}

TEST_F(WindowsTest, TablesByKeyboard) {
  Play({[&] {
    hands.Focus(form.goods);
    Press(Qt::Key_End);
    EXPECT_EQ(form.goods.current_row, 299);
    Press(Qt::Key_PageUp);
    EXPECT_LT(form.goods.current_row, 299);
    EXPECT_GT(form.goods.current_row, 250);
    Press(Qt::Key_Home);
    Press(Qt::Key_Down);
    SendText(" ");
    EXPECT_EQ(form.pressed, std::vector<std::string>{"cell 1"});
    hands.Focus(form.marks);
    Press(Qt::Key_Down);
    SendText(" ");
    EXPECT_TRUE(form.marks.items[0].checked);
    SettleWindows();
    EXPECT_EQ(windows.TopWindow()->Difference(), "");
  }});
}

TEST_F(WindowsTest, AListIsSortedNarrowedAndCopied) {
  auto* table = static_cast<QTableView*>(nullptr);
  Play({[&] {
          table = static_cast<QTableView*>(windows.TopWindow()->ViewOf(form.goods)->Target());
          hands.Sort(form.goods, 1);
          hands.Sort(form.goods, 1);
          EXPECT_EQ(Utf8(table->model()->index(0, 1).data().toString()), "Articulo 299");
          EXPECT_TRUE(table->horizontalHeader()->isSortIndicatorShown());
          SendText("29 9");
          SettleWindows();
          EXPECT_EQ(table->model()->rowCount(), 13);
          Press(Qt::Key_C, Qt::ControlModifier, "\x03");
          EXPECT_TRUE(QApplication::clipboard()->text().startsWith("Articulo\nArticulo 299\nArticulo 298\n"));
          Press(Qt::Key_Down);
          Press(Qt::Key_Menu);
          SettleWindows();
          ASSERT_NE(windows.TopWindow()->menu(), nullptr);
          const QRect row = table->visualRect(table->currentIndex());
          const QPoint at = table->viewport()->mapFromGlobal(windows.TopWindow()->menu()->pos());
          EXPECT_LE(std::abs(at.y() - row.bottom()), 4) << "below its row";
          EXPECT_EQ(form.goods.current_row, 299);
        },
        [&] { hands.ChooseMenu("mnuOrden1"); },
        [&] {
          EXPECT_EQ(Utf8(table->model()->index(0, 1).data().toString()), "Articulo 29");
          hands.CellButton(form.goods, 1, 1);
          EXPECT_EQ(form.pressed, std::vector<std::string>{"cell 129"});
          EXPECT_EQ(windows.TopWindow()->Difference(), "");
        }});
}

TEST_F(WindowsTest, ANoticeFromAnotherThreadTakesNoKeyAndStaysUntilItIsRead) {
  const auto band = [&] { return windows.TopWindow()->findChild<QWidget*>("avisos"); };
  Play({[&] {
    std::thread([&] { windows.Notify({"«Ticket T/1» no se ha impreso", ""}); }).join();
    Press(Qt::Key_1, Qt::NoModifier, "1");
    Press(Qt::Key_Return, Qt::NoModifier, "\r");
    Press(Qt::Key_2, Qt::NoModifier, "2");
  }, [&] {
    EXPECT_EQ(form.price.text + "," + form.units.text, "1,2");
    EXPECT_FALSE(band()->isHidden());
    EXPECT_EQ(Utf8(band()->findChild<QLabel*>()->text()), "«Ticket T/1» no se ha impreso");
    SendClick(*band()->findChild<QPushButton*>());
  }, [&] {
    EXPECT_TRUE(band()->isHidden());
    EXPECT_EQ(windows.Notices().Text(), "");
  }});
  for (int i = 1; i <= 5; ++i) windows.Notify({"Aviso " + std::to_string(i), ""});
  EXPECT_EQ(windows.Notices().Text(), "Y 2 avisos anteriores.\nAviso 3\nAviso 4\nAviso 5");
}

TEST_F(WindowsTest, LongWorkIsShownOnceItHasLastedAndOnlyItsOwnKeysGiveItUp) {
  using std::chrono::milliseconds;
  ui::Progress work{"Facturación", "Sumando", -1, true};
  Play({[&] {
    EXPECT_FALSE(windows.ShowProgress(work, milliseconds(100)));
    SendText("1");
    EXPECT_EQ(form.price.text, "1") << "nothing is shown yet";
    EXPECT_FALSE(windows.ShowProgress(work, milliseconds(900)));
    SendText("23 ");
    Press(Qt::Key_Return, Qt::NoModifier, "\r");
    EXPECT_EQ(form.price.text, "1");
    EXPECT_FALSE(windows.ShowProgress(work, milliseconds(950))) << "keys meant for the form";
    work.can_be_given_up = false;
    windows.ShowProgress(work, milliseconds(960));
    Press(Qt::Key_Escape);
    EXPECT_FALSE(windows.ShowProgress(work, milliseconds(980))) << "it is written already";
    work.can_be_given_up = true;
    windows.ShowProgress(work, milliseconds(990));
    Press(Qt::Key_Escape);
    EXPECT_TRUE(windows.ShowProgress(work, milliseconds(1000)));
    windows.EndProgress();
    SettleWindows();
    SendText("2");
    EXPECT_EQ(form.price.text, "12");
  }});
}

TEST_F(WindowsTest, TheCurrentRowIsInSightAndAShorterListStaysWhereItWas) {
  Play({[&] {
    auto* table = static_cast<QTableView*>(windows.TopWindow()->ViewOf(form.goods)->Target());
    const auto in_sight = [&] {
      windows.Refresh();
      SettleWindows();
      const QRect place = table->visualRect(table->model()->index(form.goods.current_row, 1));
      return table->viewport()->rect().contains(place.center());
    };
    form.goods.rows.push_back({Variant(300), Variant("Articulo 300")});
    form.goods.current_row = 300;
    EXPECT_TRUE(in_sight());
    form.goods.current_row = 150;
    EXPECT_TRUE(in_sight());
    const int place = table->verticalScrollBar()->value();
    form.goods.rows.erase(form.goods.rows.begin() + 150);
    EXPECT_TRUE(in_sight());
    EXPECT_EQ(table->verticalScrollBar()->value(), place);
  }});
}

TEST_F(WindowsTest, SizesAndWidthsAreRemembered) {
  MemorySettings settings;
  windows.SetSettings(settings);
  Play({[&] {
    windows.TopWindow()->resize(900, 700);
    SettleWindows();
    auto* rows = static_cast<RowsView*>(windows.TopWindow()->ViewOf(form.marks));
    form.marks.layout.push_back({"Caja", "", 900, ui::Align::Right, false, false});
    windows.Refresh();
    auto* header = static_cast<QTableView*>(rows->Target())->horizontalHeader();
    header->resizeSection(1, 333);
    SendClick(*header->viewport(), {300, 5});
  }});
  EXPECT_EQ(settings.Read("TPV", "Windows", "frmPrueba"), "900,700");
  const std::string kept = settings.Read("TPV", "Windows", "frmPrueba.ListView1");
  EXPECT_TRUE(kept.ends_with(",333")) << kept;
  Play({[&] {
    EXPECT_EQ(windows.TopWindow()->size(), QSize(900, 700));
    auto* table = static_cast<QTableView*>(windows.TopWindow()->ViewOf(form.marks)->Target());
    EXPECT_EQ(table->columnWidth(1), 333);
  }});
}

TEST_F(WindowsTest, AHandlersErrorIsToldAndTheScreenStaysOpen) {
  // No driver: the windows wait for the operator, so timers have to be the operator.
  std::string told;
  QTimer first_hand;
  QObject::connect(&first_hand, &QTimer::timeout, [&] {
    if (QGuiApplication::focusWindow() == nullptr) return;
    first_hand.stop();
    Press(Qt::Key_F, Qt::AltModifier, "f");
  });
  first_hand.start(20);
  QTimer hand;
  QObject::connect(&hand, &QTimer::timeout, [&] {
    if (MessageDialog* box = windows.open_box()) {
      told = box->box().text;
      SendClick(*box->ButtonOf(ui::Answer::Ok));
    } else if (!told.empty()) {
      EXPECT_FALSE(form.closing);
      form.closing = true;
    }
  });
  hand.start(20);
  QTimer::singleShot(20000, &hand, [&] { form.closing = true; });  // nothing was told
  windows.ShowModal(form);
  EXPECT_NE(told.find("se ha roto"), std::string::npos);
}

TEST_F(WindowsTest, ADateIsPickedFromACalendar) {
  form.price.input = ui::Input::Date;
  form.price.max_length = 10;
  form.price.text = "10/12/2026";
  Play({[&] { Press(Qt::Key_F4); },
        [&] {
          ASSERT_NE(QApplication::activePopupWidget(), nullptr);
          Press(Qt::Key_Right);
        },
        [&] { Press(Qt::Key_Return, Qt::NoModifier, "\r"); },
        [&] {
          EXPECT_EQ(form.price.text, "11/12/2026");
          EXPECT_EQ(form.focus, &form.price);
          EXPECT_EQ(form.open_calendar, nullptr);
          auto* button = windows.TopWindow()->findChild<QToolButton*>();
          ASSERT_NE(button, nullptr);
          EXPECT_EQ(button->accessibleName(), "Calendario de Precio");
          SendClick(*button);
        },
        [&] {
          EXPECT_EQ(form.open_calendar, &form.price);
          Press(Qt::Key_Escape, Qt::NoModifier, "\x1B");
        },
        [&] {
          EXPECT_EQ(form.open_calendar, nullptr);
          EXPECT_FALSE(form.closing);
          EXPECT_EQ(form.price.text, "11/12/2026");
        }});
}

TEST_F(WindowsTest, TheManualLiesBesideTheTill) {
  Play({[&] { windows.ShowManual("cobro"); },
        [&] {
          ASSERT_NE(windows.open_manual(), nullptr);
          EXPECT_NE(windows.open_manual()->text().indexOf("metálico"), -1);
          windows.open_manual()->activateWindow();
        },
        [&] {
          EXPECT_TRUE(windows.open_manual()->isActiveWindow());
          SendText("12");  // of the till
        },
        [&] {
          EXPECT_EQ(form.price.text, "12");
          EXPECT_EQ(windows.TopWindow()->Difference(), "");
          Press(Qt::Key_Escape, Qt::NoModifier, "\x1B");
        },
        [&] {
          EXPECT_FALSE(windows.open_manual()->isVisible());
          EXPECT_FALSE(form.closing);
        }});
  EXPECT_EQ(windows.open_manual(), nullptr);
}

TEST_F(WindowsTest, AHundredThousandRowsAreSearchedAsOneTypes) {
  ui::SearchRequest request;
  request.captions = {"Codigo", "Nombre"};
  request.widths = {600, 6000};
  request.shown_columns = {1, 2};
  for (int i = 0; i < 100000; ++i) {
    request.rows.push_back({Variant(i), Variant(i), Variant("Peña " + std::to_string(i))});
  }
  driver.steps = {[&] { SendText("pena 77"); },
                  [&] {
                    EXPECT_EQ(windows.open_search()->list().Visible().size(), 3691u);
                    Press(Qt::Key_Down);
                    Press(Qt::Key_Return, Qt::NoModifier, "\r");
                  }};
  windows.SetDriver(driver);
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(windows.Search(request), 177u);
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(8));
  driver.steps = {[&] { Press(Qt::Key_Escape, Qt::NoModifier, "\x1B"); }};
  EXPECT_EQ(windows.Search(request), std::nullopt);
}

}  // namespace
}  // namespace tpv::qt
