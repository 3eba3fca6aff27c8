// Gets a document out of its printer: the work that goes on behind the till's back.
#pragma once

#include <functional>
#include <string>

#include "adapters/files/deadline.h"
#include "adapters/files/document_folder.h"
#include "adapters/files/file_settings.h"
#include "adapters/files/outbox_folder.h"
#include "adapters/files/paper_document.h"
#include "adapters/files/printer_setup.h"
#include "adapters/files/queue_watch.h"
#include "platform/notice.h"

namespace tpv {

// Who hears of it; called from whichever thread delivers.
struct PaperNews {
  std::function<void(const Notice&)> failed;
  // With the folder's path, when a document went into a folder as its printer wants it.
  std::function<void(const std::string& folder)> in_folder;
};

class PaperDelivery {
 public:
  // Takes its own look at the settings. The others outlive the delivery.
  PaperDelivery(const FileSettings& settings, const Clock& clock, const QueueWatch& watch,
                const PaperNews& news)
      : settings_(settings.path()), clock_(clock), watch_(watch), news_(news) {}

  // To the printer so named, "" for the default. What a printer does not take stays in the
  // outbox where that keeps it (`held` is not null), lies in a folder to be read, once, and
  // a document with a title is told of. Throws nothing.
  void Deliver(const std::string& printer, const PaperDocument& document, HeldPaper* held,
               const Deadline& deadline) const;

 private:
  PrinterSetup Find(const std::string& name, const Deadline& deadline) const;
  // Returns why the document waits in the printer's queue, "" when it does not.
  std::string Print(const PrinterSetup& printer, const PaperDocument& document, HeldPaper* held,
                    const Deadline& deadline) const;
  std::string PrintPages(const PrinterSetup& printer, const PaperDocument& document, HeldPaper* held,
                         const Deadline& deadline) const;
  std::string BytesFor(const PrinterSetup& printer, const PaperDocument& document) const;
  std::string Save(const PrinterSetup& printer, const PaperDocument& document) const;
  // Where the document lies now.
  std::string Keep(const PaperDocument& document) const;
  void TellFailure(const std::string& printer, const PaperDocument& document, const std::string& why,
                   const std::string& detail, const HeldPaper* held) const;

  const FileSettings settings_;
  const Clock& clock_;
  const QueueWatch& watch_;
  const PaperNews& news_;
};

// Where the settings want it, else the usual place. `key` is in setting_names.h.
// Throws PrintError.
std::string PaperFolder(const Settings& settings, std::string_view key);

}  // namespace tpv
