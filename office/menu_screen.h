// The office's own window: a button for each of its windows.
#pragma once

#include <memory>
#include <vector>

#include "office/tools.h"
#include "screen/screen.h"

namespace tpv::office {

class MenuScreen : public Screen {
 public:
  // Both outlive the screen.
  MenuScreen(Context& context, const Tools& tools);

 private:
  void Run(std::size_t entry);

  const Tools& tools_;
  std::vector<std::unique_ptr<ui::Frame>> frames_;
  std::vector<std::unique_ptr<ui::Button>> buttons_;
  ui::Button cmdCerrar{*this, "cmdCerrar", "Cerrar"};
};

// Opens it; returns when the operator closes it.
void OpenOffice(Context& context, const Tools& tools);

}  // namespace tpv::office
