#include "adapters/files/pdf/canvas.h"

#include <cairo-pdf.h>

#include "adapters/files/pdf/fonts.h"
#include "platform/printer.h"

namespace tpv {

namespace {

cairo_status_t Append(void* bytes, const unsigned char* data, unsigned int length) {
  static_cast<std::string*>(bytes)->append(reinterpret_cast<const char*>(data), length);
  return CAIRO_STATUS_SUCCESS;
}

}  // namespace

Canvas::Canvas(double width, double height)
    : surface_(cairo_pdf_surface_create_for_stream(&Append, &bytes_, width, height)),
      context_(cairo_create(surface_.get())) {
  ReadFontRules();
}

std::string Canvas::Finish() {
  cairo_status_t status = cairo_status(context_.get());
  cairo_surface_finish(surface_.get());
  if (status == CAIRO_STATUS_SUCCESS) status = cairo_surface_status(surface_.get());
  if (status == CAIRO_STATUS_SUCCESS) return std::move(bytes_);
  throw PrintError(std::string("No se puede dibujar el documento: ") +
                   cairo_status_to_string(status));
}

}  // namespace tpv
