// Turns a form's declared rows into widgets. Knows kinds of controls, no screen.
#pragma once

#include <QWidget>
#include <map>
#include <memory>

#include "adapters/qt/control_view.h"
#include "platform/ui/form.h"

namespace tpv::qt {

// By control, every control of the layout.
using Views = std::map<const ui::Control*, std::unique_ptr<ControlView>>;

// Fills `content` with the form's rows; it owns the widgets.
Views LayOut(ui::Form& form, QWidget& content, Actions& actions);

}  // namespace tpv::qt
