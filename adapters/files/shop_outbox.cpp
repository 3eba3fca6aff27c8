#include "adapters/files/shop_outbox.h"

#include "adapters/files/private_files.h"

namespace tpv {

namespace {

// Looked up each time: the user's folder is the environment's to say.
OutboxFolder Folder() { return OutboxFolder(DataFolder() + "/sin-imprimir"); }

ShopOutbox::Held Taken(const std::string& id) {
  ShopOutbox::Held held = Folder().Take(id);
  if (!held) throw PrintError("El documento ya no está sin imprimir: se ha impreso o se ha olvidado");
  return held;
}

template <typename Work>
auto OrPrintError(Work work) {
  try {
    return work();
  } catch (const FileError& error) {
    throw PrintError(error.what());
  }
}

}  // namespace

// A disk that is full keeps nobody from printing.
ShopOutbox::Held ShopOutbox::Keep(const std::string& printer, const PaperDocument& document) const {
  if (document.title.empty()) return nullptr;
  try {
    return Folder().Keep({{}, document.title, printer, clock_.Now(), {}, false}, KeptContent(document));
  } catch (const FileError&) {
    return nullptr;
  }
}

std::vector<UnprintedDocument> ShopOutbox::List() const {
  return OrPrintError([] { return Folder().List(); });
}

void ShopOutbox::Print(const std::string& id, std::string_view printer) {
  OrPrintError([&] {
    Held held = Taken(id);
    PaperDocument document = DocumentOf(held->Title(), held->Content(), codes_);
    hand_over_(std::string(printer), std::move(document), std::move(held));
  });
}

void ShopOutbox::Forget(const std::string& id) {
  OrPrintError([&] { Taken(id)->Done(); });
}

}  // namespace tpv
