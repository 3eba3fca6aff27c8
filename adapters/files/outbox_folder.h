// The folder of documents on their way to a printer: one that stays there was not printed.
// Several programs of the machine's user may work with it.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "adapters/files/descriptor.h"
#include "platform/print_outbox.h"

namespace tpv {

// A document that one program has in hand: no other sees it until this goes, and then as
// it was left. A program that dies lets go of it, too. Used from one thread at a time.
class HeldPaper {
 public:
  // What is written of it, as it was put in.
  std::string Title() const;
  std::string Content() const;  // Throws FileError
  bool Again() const { return again_; }  // it failed before
  // It goes out now. Whatever ends the program from here on leaves it as maybe printed.
  void Sending();
  // It is printed, or nobody wants it any more.
  void Done();
  // It waits again. One that may have been printed before stays so.
  void Failed(std::string_view printer, std::string_view why, bool maybe_printed);

 private:
  friend class OutboxFolder;
  HeldPaper(Descriptor file, std::string path, bool again);
  void Rename(bool maybe_printed);

  Descriptor file_;  // locked
  std::string path_;
  bool doubtful_;     // before this program sent it
  bool again_;
};

class OutboxFolder {
 public:
  // Made when the first document comes.
  explicit OutboxFolder(std::string path) : path_(std::move(path)) {}

  // Throws FileError, also when there are too many.
  std::unique_ptr<HeldPaper> Keep(const UnprintedDocument& about, std::string_view content) const;
  // What nobody has in hand, oldest first. Throws FileError.
  std::vector<UnprintedDocument> List() const;
  // Null when it is not there any more, or in somebody's hand. Throws FileError.
  std::unique_ptr<HeldPaper> Take(const std::string& id) const;

 private:
  void RequireRoom(std::size_t more) const;

  const std::string path_;
};

}  // namespace tpv
