// A PDF file in memory that is drawn on; lengths are points.
#pragma once

#include <cairo.h>

#include <memory>
#include <string>

namespace tpv {

class Canvas {
 public:
  Canvas(double width, double height);

  cairo_t* get() const { return context_.get(); }
  // Throws PrintError when something went wrong while drawing.
  std::string Finish();

 private:
  struct Free {
    void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
    void operator()(cairo_t* context) const { cairo_destroy(context); }
  };

  std::string bytes_;
  std::unique_ptr<cairo_surface_t, Free> surface_;
  std::unique_ptr<cairo_t, Free> context_;
};

}  // namespace tpv
