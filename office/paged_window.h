// A window with more fields than fit at once: pages, and a button for each on top.
#pragma once

#include <memory>
#include <vector>

#include "office/window.h"

namespace tpv::office {

class PagedWindow : public Window {
 protected:
  using Window::Window;

  // A page more, whose fields are set with Rows. `title` with its access key.
  ui::Frame& AddPage(const std::string& title);
  // The rows of the whole window: the pages' buttons, the pages, and what stays below.
  void LayOutPages(std::vector<ui::Control*> below);
  void ShowPage(std::size_t number);
  // The page that the control stands on, with the focus there.
  void GoTo(ui::Control& control);

 private:
  struct Page {
    std::unique_ptr<ui::Button> button;
    std::unique_ptr<ui::Frame> frame;
  };
  std::vector<Page> pages_;
};

}  // namespace tpv::office
