// Writes XML into memory, element by element.
#pragma once

#include <libxml/xmlwriter.h>

#include <memory>
#include <string>

namespace tpv::fiscal {

class XmlWriter {
 public:
  // Throws std::bad_alloc, as all of them where there is no memory left.
  XmlWriter();

  // Names with their prefix: "sf:NIF".
  void Open(const char* name);
  void Attribute(const char* name, const std::string& value);
  void Close();
  // Characters that XML cannot have become blanks.
  void Element(const char* name, const std::string& text);
  // Nothing for an empty text.
  void Optional(const char* name, const std::string& text);
  // The document, begun with its declaration.
  std::string Finish();

 private:
  struct Free {
    void operator()(xmlBuffer* buffer) const { xmlBufferFree(buffer); }
    void operator()(xmlTextWriter* writer) const { xmlFreeTextWriter(writer); }
  };
  std::unique_ptr<xmlBuffer, Free> buffer_;
  std::unique_ptr<xmlTextWriter, Free> writer_;
};

}  // namespace tpv::fiscal
