#include "adapters/qt/control_view.h"

namespace tpv::qt {

void ControlView::Sync() {
  QWidget* outer = Outer();
  if (outer->isVisibleTo(outer->parentWidget()) != control.visible) {
    outer->setVisible(control.visible);
  }
  const bool enabled = control.IsEnabled();
  if (Target()->isEnabled() != enabled) outer->setEnabled(enabled);
}

bool ControlView::HasNewCaption() {
  if (caption_ == control.caption && access_key_ == control.access_key) return false;
  caption_ = control.caption;
  access_key_ = control.access_key;
  return true;
}

}  // namespace tpv::qt
