// Keys of the keyboard as the screens know them, and back.
#pragma once

#include <QKeyEvent>
#include <optional>

#include "platform/ui/form.h"
#include "screen/scan_burst.h"

namespace tpv::qt {

// nullopt for a key that types a character or only modifies others.
std::optional<ui::Key> KeyOf(const QKeyEvent& event);

// Whether the key moves the caret or marks text inside a field, which the field
// does by itself.
bool MovesCaret(const QKeyEvent& event);

// When the key was pressed; nullopt for one that no keyboard sent.
ui::KeyMoment MomentOf(const QKeyEvent& event);

// What a keyboard sends for a key.
struct Stroke {
  int code = 0;
  Qt::KeyboardModifiers modifiers = Qt::NoModifier;
  QString text;
  quint64 moment = 0;  // milliseconds; 0: nobody knows
};
Stroke StrokeOf(ui::Key key);

}  // namespace tpv::qt
