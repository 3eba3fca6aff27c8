#include "adapters/qt/keys.h"

namespace tpv::qt {

namespace {

struct Mapping {
  int code;
  ui::Key key;
  const char* text;
};

constexpr Mapping kMappings[] = {
    {Qt::Key_Return, ui::Key::Enter, "\r"},  {Qt::Key_Enter, ui::Key::Enter, "\r"},
    {Qt::Key_Tab, ui::Key::Tab, "\t"},       {Qt::Key_Backtab, ui::Key::BackTab, ""},
    {Qt::Key_Escape, ui::Key::Esc, "\x1B"},  {Qt::Key_F1, ui::Key::F1, ""},
    {Qt::Key_F4, ui::Key::F4, ""},           {Qt::Key_F5, ui::Key::F5, ""},
    {Qt::Key_F8, ui::Key::F8, ""},
    {Qt::Key_Up, ui::Key::Up, ""},           {Qt::Key_Down, ui::Key::Down, ""},
    {Qt::Key_Delete, ui::Key::Delete, "\x7F"}, {Qt::Key_Backspace, ui::Key::Backspace, "\b"},
};

bool IsModifier(int code) {
  return code == Qt::Key_Shift || code == Qt::Key_Control || code == Qt::Key_Alt ||
         code == Qt::Key_AltGr || code == Qt::Key_Meta || code == Qt::Key_CapsLock ||
         code == Qt::Key_NumLock;
}

bool Types(const QString& text) {
  return !text.isEmpty() && QChar::isPrint(text.toUcs4().first());
}

}  // namespace

std::optional<ui::Key> KeyOf(const QKeyEvent& event) {
  for (const Mapping& mapping : kMappings) {
    if (mapping.code == event.key()) return mapping.key;
  }
  if (event.modifiers() & Qt::KeypadModifier) {
    if (event.key() == Qt::Key_Plus) return ui::Key::Add;
    if (event.key() == Qt::Key_Minus) return ui::Key::Subtract;
  }
  if (Types(event.text()) || IsModifier(event.key())) return std::nullopt;
  return ui::Key::Other;
}

bool MovesCaret(const QKeyEvent& event) {
  switch (event.key()) {
    case Qt::Key_Left:
    case Qt::Key_Right:
    case Qt::Key_Home:
    case Qt::Key_End:
      return true;
    default:
      return event.matches(QKeySequence::SelectAll) || event.matches(QKeySequence::Copy);
  }
}

ui::KeyMoment MomentOf(const QKeyEvent& event) {
  if (event.timestamp() == 0) return std::nullopt;
  return static_cast<std::int64_t>(event.timestamp());
}

Stroke StrokeOf(ui::Key key) {
  if (key == ui::Key::Add) return {Qt::Key_Plus, Qt::KeypadModifier, "+", 0};
  if (key == ui::Key::Subtract) return {Qt::Key_Minus, Qt::KeypadModifier, "-", 0};
  for (const Mapping& mapping : kMappings) {
    if (mapping.key == key) return {mapping.code, Qt::NoModifier, mapping.text, 0};
  }
  return {};
}

}  // namespace tpv::qt
