// A message of XML that was received: read as untrusted, looked through by name.
#pragma once

#include <libxml/tree.h>

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace tpv::fiscal {

class XmlDocument {
 public:
  // Throws NoAnswer for what is no XML. No entity, no schema and no file is followed.
  explicit XmlDocument(std::string_view bytes);

  // The first element of that name, wherever it stands; null when there is none.
  xmlNode* Find(const char* name) const;

 private:
  struct Free {
    void operator()(xmlDoc* document) const { xmlFreeDoc(document); }
  };
  std::unique_ptr<xmlDoc, Free> document_;
};

// Below a node, whatever its prefix; null when there is none or the node is null.
xmlNode* Below(xmlNode* node, const char* name);
std::vector<xmlNode*> AllBelow(xmlNode* node, const char* name);
// Trimmed; "" for null.
std::string TextOf(xmlNode* node);

}  // namespace tpv::fiscal
