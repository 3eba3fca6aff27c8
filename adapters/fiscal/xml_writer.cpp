#include "adapters/fiscal/xml_writer.h"

#include <new>

#include "base/text.h"

namespace tpv::fiscal {

namespace {

void Require(int result) {
  if (result < 0) throw std::bad_alloc();
}

const xmlChar* Bytes(const std::string& text) { return reinterpret_cast<const xmlChar*>(text.c_str()); }
const xmlChar* Bytes(const char* text) { return reinterpret_cast<const xmlChar*>(text); }

// Valid letters that the standard leaves out all the same.
std::string Allowed(const std::string& text) {
  return ReplaceAll(ReplaceAll(OneLine(text), "\xEF\xBF\xBE", " "), "\xEF\xBF\xBF", " ");
}

}  // namespace

XmlWriter::XmlWriter() : buffer_(xmlBufferCreate()) {
  if (buffer_) writer_.reset(xmlNewTextWriterMemory(buffer_.get(), 0));
  if (!writer_) throw std::bad_alloc();
  Require(xmlTextWriterStartDocument(writer_.get(), "1.0", "UTF-8", nullptr));
}

void XmlWriter::Open(const char* name) { Require(xmlTextWriterStartElement(writer_.get(), Bytes(name))); }

void XmlWriter::Attribute(const char* name, const std::string& value) {
  Require(xmlTextWriterWriteAttribute(writer_.get(), Bytes(name), Bytes(value)));
}

void XmlWriter::Close() { Require(xmlTextWriterEndElement(writer_.get())); }

void XmlWriter::Element(const char* name, const std::string& text) {
  Require(xmlTextWriterWriteElement(writer_.get(), Bytes(name), Bytes(Allowed(text))));
}

void XmlWriter::Optional(const char* name, const std::string& text) {
  if (!text.empty()) Element(name, text);
}

std::string XmlWriter::Finish() {
  Require(xmlTextWriterEndDocument(writer_.get()));
  writer_.reset();  // what it holds back goes into the buffer
  return reinterpret_cast<const char*>(xmlBufferContent(buffer_.get()));
}

}  // namespace tpv::fiscal
