#include "adapters/fiscal/xml_document.h"

#include <libxml/parser.h>

#include "base/text.h"
#include "fiscal/agency.h"

namespace tpv::fiscal {

namespace {

bool IsNamed(const xmlNode* node, const char* name) {
  return node->type == XML_ELEMENT_NODE && xmlStrEqual(node->name, BAD_CAST name) != 0;
}

xmlNode* FindFrom(xmlNode* node, const char* name) {
  for (; node != nullptr; node = node->next) {
    if (IsNamed(node, name)) return node;
    if (xmlNode* found = FindFrom(node->children, name)) return found;
  }
  return nullptr;
}

}  // namespace

XmlDocument::XmlDocument(std::string_view bytes)
    : document_(xmlReadMemory(bytes.data(), static_cast<int>(bytes.size()), nullptr, nullptr,
                              XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING)) {
  if (!document_) throw NoAnswer("La respuesta no se entiende");
  // Only an attack brings definitions along.
  if (document_->intSubset != nullptr) throw NoAnswer("La respuesta trae definiciones, que no se aceptan");
}

xmlNode* XmlDocument::Find(const char* name) const {
  return FindFrom(xmlDocGetRootElement(document_.get()), name);
}

xmlNode* Below(xmlNode* node, const char* name) {
  const std::vector<xmlNode*> all = AllBelow(node, name);
  return all.empty() ? nullptr : all.front();
}

std::vector<xmlNode*> AllBelow(xmlNode* node, const char* name) {
  std::vector<xmlNode*> found;
  if (node == nullptr) return found;
  for (xmlNode* child = node->children; child != nullptr; child = child->next) {
    if (IsNamed(child, name)) found.push_back(child);
  }
  return found;
}

std::string TextOf(xmlNode* node) {
  if (node == nullptr) return "";
  const std::unique_ptr<xmlChar, decltype(xmlFree)> content(xmlNodeGetContent(node), xmlFree);
  return content ? Trim(reinterpret_cast<const char*>(content.get())) : std::string();
}

}  // namespace tpv::fiscal
