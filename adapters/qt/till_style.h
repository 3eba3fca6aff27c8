// How the till looks: calm colours, large type, one frame around what can be
// typed into and one fill for what can be pressed.
#pragma once

#include <QColor>
#include <QFont>
#include <QProxyStyle>

namespace tpv::qt {

namespace colour {
// Every text on its ground keeps a contrast of 4.5:1 or more, disabled text 3:1.
inline const QColor kGround(0xE9, 0xEE, 0xF2);
inline const QColor kCard(0xFF, 0xFF, 0xFF);
inline const QColor kShown(0xF3, 0xF6, 0xF8);  // fields that only show
inline const QColor kLine(0xC3, 0xCE, 0xD6);
inline const QColor kFieldLine(0x7D, 0x8F, 0x9C);
inline const QColor kText(0x14, 0x22, 0x2D);
inline const QColor kLabel(0x47, 0x58, 0x66);
inline const QColor kFaded(0x7F, 0x8B, 0x95);
inline const QColor kAccent(0x0B, 0x5A, 0x85);
inline const QColor kAccentDark(0x08, 0x45, 0x67);
inline const QColor kSelected(0xCF, 0xE5, 0xF3);
inline const QColor kWarning(0xA3, 0x26, 0x1F);
inline const QColor kWarningGround(0xFB, 0xE3, 0xE0);
inline const QColor kBand(0x12, 0x33, 0x48);
inline const QColor kBandLabel(0xA9, 0xC4, 0xD6);
inline const QColor kGood(0x9C, 0xE3, 0xB4);
inline const QColor kMissing(0xFF, 0xD4, 0x79);
}  // namespace colour

inline constexpr const char* kTillFont = "Liberation Sans";

// Type sizes in pixels of a screen at 100 %.
inline constexpr int kLabelSize = 13;
inline constexpr int kTextSize = 17;
inline constexpr int kLargeSize = 26;
inline constexpr int kDisplaySize = 54;

// Sizes above the usual text are bold. Four faces in all: each one more costs a
// window's start half a millisecond.
QFont Type(int pixels);
// Larger type for all windows made from now on, 1 to 1.5 times the usual; what the
// desktop asks for when it is more. Figures read from afar are large as they are.
void SetTypeScale(double scale);

// The dynamic property in which a button carries its ui::Emphasis.
inline constexpr const char* kEmphasis = "tpvEmphasis";

class TillStyle : public QProxyStyle {
 public:
  TillStyle();

  void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
  void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                   const QWidget* widget) const override;
  void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                          QPainter* painter, const QWidget* widget) const override;
  QRect subControlRect(ComplexControl control, const QStyleOptionComplex* option,
                       SubControl part, const QWidget* widget) const override;
  QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& contents,
                         const QWidget* widget) const override;
  int pixelMetric(PixelMetric metric, const QStyleOption* option,
                  const QWidget* widget) const override;
  int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                QStyleHintReturn* data) const override;
};

// Gives the application the till's style, palette and font.
void DressApplication();
// The same to one window and whatever comes to be inside it: for an application
// that is not the till's.
void DressWindow(QWidget& window);

}  // namespace tpv::qt
