#include "adapters/qt/till_style.h"

#include <QApplication>
#include <QChildEvent>
#include <QPainter>
#include <QPalette>
#include <QPointer>
#include <QScreen>
#include <QStyleOption>
#include <algorithm>

#include "adapters/qt/panel.h"
#include "platform/ui/controls.h"

namespace tpv::qt {

namespace {

constexpr int kTableFrame = 2;

// A field's frame: the palette's base says the colour the screen gave it.
void FieldPanel(const QStyleOption& option, QPainter& painter) {
  const bool enabled = option.state & QStyle::State_Enabled;
  const bool focused = option.state & QStyle::State_HasFocus;
  const bool shown_only = option.state & QStyle::State_ReadOnly;
  const QColor fill = enabled ? option.palette.color(QPalette::Base) : colour::kGround;
  const QColor line = focused ? colour::kAccent
                      : enabled && !shown_only ? colour::kFieldLine
                                               : colour::kLine;
  Draw(painter, option.rect, {fill, line, focused ? 2 : 1});
}

struct ButtonColours {
  QColor fill;
  QColor line;
};

ButtonColours ColoursOf(const QStyleOption& option, ui::Emphasis emphasis) {
  if (!(option.state & QStyle::State_Enabled)) return {colour::kGround, colour::kLine};
  const bool down = option.state & (QStyle::State_Sunken | QStyle::State_On);
  const bool hover = option.state & QStyle::State_MouseOver;
  switch (emphasis) {
    case ui::Emphasis::Strong:
      return {down || hover ? colour::kAccentDark : colour::kAccent, colour::kAccentDark};
    case ui::Emphasis::Warning:
      return {down ? QColor(0xF6, 0xD9, 0xD6) : colour::kCard, colour::kWarning};
    default:
      return {down || hover ? colour::kSelected : colour::kCard, colour::kFieldLine};
  }
}

void ButtonPanel(const QStyleOption& option, QPainter& painter, const QWidget* widget) {
  const auto emphasis = widget == nullptr
                            ? ui::Emphasis::Normal
                            : static_cast<ui::Emphasis>(widget->property(kEmphasis).toInt());
  const ButtonColours colours = ColoursOf(option, emphasis);
  Draw(painter, option.rect, {colours.fill, colours.line});
  if (!(option.state & QStyle::State_HasFocus)) return;
  // The focus: the toolkit's yellow inside a dark ring, on whatever fill.
  Draw(painter, option.rect, {Qt::transparent, colour::kText, 2});
  Draw(painter, option.rect.adjusted(2, 2, -2, -2), {Qt::transparent, Qt::yellow, 2});
}

void TableFrame(const QStyleOption& option, QPainter& painter) {
  const bool focused = option.state & QStyle::State_HasFocus;
  painter.setPen(QPen(focused ? colour::kAccent : colour::kLine, focused ? 2 * kTableFrame : 1));
  painter.setBrush(Qt::NoBrush);
  painter.drawRect(focused ? option.rect : option.rect.adjusted(0, 0, -1, -1));
}

// Flat: the basic style's shine takes longer to paint than all the rest of a table.
void HeaderGround(QPainter& painter, const QRect& rect) {
  painter.fillRect(rect, colour::kShown);
  painter.fillRect(QRect(rect.left(), rect.bottom(), rect.width(), 1), colour::kFieldLine);
}

void Arrow(QPainter& painter, const QRect& rect, const QColor& colour) {
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(colour, 2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  const QPointF centre = QRectF(rect).center();
  painter.drawPolyline(QPolygonF{centre + QPointF(-5, -2.5), centre + QPointF(0, 2.5),
                                 centre + QPointF(5, -2.5)});
  painter.restore();
}

QPalette TillPalette() {
  QPalette palette;
  const auto both = [&](QPalette::ColorRole role, const QColor& on, const QColor& off) {
    palette.setColor(QPalette::Active, role, on);
    palette.setColor(QPalette::Inactive, role, on);
    palette.setColor(QPalette::Disabled, role, off);
  };
  both(QPalette::Window, colour::kGround, colour::kGround);
  both(QPalette::WindowText, colour::kText, colour::kFaded);
  both(QPalette::Base, colour::kCard, colour::kGround);
  both(QPalette::AlternateBase, colour::kShown, colour::kGround);
  both(QPalette::Text, colour::kText, colour::kFaded);
  both(QPalette::Button, colour::kCard, colour::kGround);
  both(QPalette::ButtonText, colour::kText, colour::kFaded);
  both(QPalette::Highlight, colour::kAccent, colour::kLine);
  both(QPalette::HighlightedText, Qt::white, colour::kText);
  both(QPalette::PlaceholderText, colour::kLabel, colour::kFaded);
  return palette;
}

}  // namespace

namespace {

double type_scale = 1;

// The size that the desktop gives its texts, where it differs from the usual.
double DesktopScale() {
  constexpr double kUsualDots = 96;
  const QScreen* screen = QGuiApplication::primaryScreen();
  return screen == nullptr ? 1 : screen->logicalDotsPerInchY() / kUsualDots;
}

}  // namespace

void SetTypeScale(double scale) { type_scale = std::clamp(scale, 1.0, 1.5); }

QFont Type(int pixels) {
  QFont font(kTillFont);  // or what the system has in its place
  font.setPixelSize(pixels > kLargeSize ? pixels : qRound(pixels * type_scale));
  font.setBold(pixels > kTextSize);
  font.setHintingPreference(QFont::PreferNoHinting);
  return font;
}

TillStyle::TillStyle() : QProxyStyle("Fusion") {}

void TillStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option,
                              QPainter* painter, const QWidget* widget) const {
  switch (element) {
    case PE_PanelLineEdit:
      return FieldPanel(*option, *painter);
    case PE_PanelButtonCommand:
      return ButtonPanel(*option, *painter, widget);
    case PE_Frame:
      if (widget == nullptr || !widget->inherits("QAbstractItemView")) break;
      return TableFrame(*option, *painter);
    case PE_FrameFocusRect:
      // Buttons and fields show the focus in their own frames.
      if (widget != nullptr && (widget->inherits("QPushButton") || widget->inherits("QComboBox") ||
                                widget->inherits("QAbstractItemView"))) {
        return;
      }
      return Draw(*painter, option->rect.adjusted(-2, -1, 2, 1),
                  {Qt::transparent, colour::kAccent, 2});
    default:
      break;
  }
  QProxyStyle::drawPrimitive(element, option, painter, widget);
}

void TillStyle::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                            const QWidget* widget) const {
  if (element == CE_HeaderSection) return HeaderGround(*painter, option->rect);
  QProxyStyle::drawControl(element, option, painter, widget);
}

void TillStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                                   QPainter* painter, const QWidget* widget) const {
  if (control != CC_ComboBox) {
    return QProxyStyle::drawComplexControl(control, option, painter, widget);
  }
  QStyleOption panel(*option);
  if (option->state & State_HasFocus) panel.palette.setColor(QPalette::Base, Qt::yellow);
  FieldPanel(panel, *painter);
  const QRect arrow = subControlRect(CC_ComboBox, option, SC_ComboBoxArrow, widget);
  const bool enabled = option->state & State_Enabled;
  Arrow(*painter, arrow, enabled ? colour::kText : colour::kFaded);
}

QRect TillStyle::subControlRect(ComplexControl control, const QStyleOptionComplex* option,
                                SubControl part, const QWidget* widget) const {
  const QRect rect = QProxyStyle::subControlRect(control, option, part, widget);
  const bool text = control == CC_ComboBox && part == SC_ComboBoxEditField;
  return text ? rect.adjusted(6, 0, 0, 0) : rect;
}

// A table's header asks for the room of a bold text, and has none.
QSize TillStyle::sizeFromContents(ContentsType type, const QStyleOption* option,
                                  const QSize& contents, const QWidget* widget) const {
  const auto* header = qstyleoption_cast<const QStyleOptionHeader*>(option);
  if (type != CT_HeaderSection || header == nullptr || widget == nullptr) {
    return QProxyStyle::sizeFromContents(type, option, contents, widget);
  }
  QStyleOptionHeader plain(*header);
  plain.fontMetrics = QFontMetrics(widget->font());
  return QProxyStyle::sizeFromContents(type, &plain, contents, widget);
}

int TillStyle::pixelMetric(PixelMetric metric, const QStyleOption* option,
                           const QWidget* widget) const {
  switch (metric) {
    case PM_DefaultFrameWidth:
      return widget != nullptr && widget->inherits("QAbstractItemView")
                 ? kTableFrame
                 : QProxyStyle::pixelMetric(metric, option, widget);
    case PM_ButtonMargin:
      return 22;
    case PM_HeaderMargin:
      return 9;
    case PM_IndicatorWidth:
    case PM_IndicatorHeight:
    case PM_ExclusiveIndicatorWidth:
    case PM_ExclusiveIndicatorHeight:
      return 20;
    case PM_ButtonShiftHorizontal:
    case PM_ButtonShiftVertical:
      return 0;
    default:
      return QProxyStyle::pixelMetric(metric, option, widget);
  }
}

int TillStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                         QStyleHintReturn* data) const {
  switch (hint) {
    case SH_UnderlineShortcut:
      return 1;
    case SH_ComboBox_Popup:
    case SH_Widget_Animate:
    case SH_Widget_Animation_Duration:
      return 0;
    default:
      return QProxyStyle::styleHint(hint, option, widget, data);
  }
}

namespace {

// One for all windows; it goes with the application.
QStyle* SharedStyle() {
  static QPointer<TillStyle> style;
  if (style.isNull()) {
    style = new TillStyle;
    style->setParent(qApp);
  }
  return style;
}

// Widgets do not inherit the style of the one they are in.
class Dresser : public QObject {
 public:
  explicit Dresser(QWidget& window) : QObject(&window) { Dress(window); }
  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() == QEvent::ChildPolished) {
      QObject* child = static_cast<QChildEvent*>(event)->child();
      if (child->isWidgetType()) Dress(static_cast<QWidget&>(*child));
    }
    return QObject::eventFilter(watched, event);
  }

 private:
  void Dress(QWidget& widget) {
    if (widget.style() != SharedStyle()) widget.setStyle(SharedStyle());
    widget.removeEventFilter(this);
    widget.installEventFilter(this);
    for (QObject* child : widget.children()) {
      if (child->isWidgetType()) Dress(static_cast<QWidget&>(*child));
    }
  }
};

}  // namespace

void DressWindow(QWidget& window) {
  window.setPalette(TillPalette());
  window.setFont(Type(kTextSize));
  new Dresser(window);  // owned by the window
}

void DressApplication() {
  SetTypeScale(std::max(type_scale, DesktopScale()));
  QApplication::setStyle(new TillStyle);  // owned by the application
  QApplication::setPalette(TillPalette());
  QApplication::setFont(Type(kTextSize));
  QApplication::setEffectEnabled(Qt::UI_AnimateCombo, false);
  QApplication::setEffectEnabled(Qt::UI_AnimateMenu, false);
}

}  // namespace tpv::qt
