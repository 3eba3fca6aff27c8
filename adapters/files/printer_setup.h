// Which printers the till has, and how each of them prints.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/settings.h"

namespace tpv {

class FileSettings;

enum class PrinterMode {
  Folder,   // a text file and a PDF a document
  Receipt,  // escape codes to a target (channel.h)
  Page,     // pages to a queue of the printing system
  Unknown,  // a mode that nobody understands: listed, but it cannot print
};

struct PrinterSetup {
  std::string name;
  PrinterMode mode = PrinterMode::Folder;
  std::string target;  // folder, target, queue or what is not understood; "" for the usual folder
};

inline constexpr std::string_view kFolderPrinter = "Carpeta de tickets";

// Reads "folder", "folder:/path", "escpos:TARGET", "page" or "page:QUEUE".
std::optional<PrinterSetup> ParsePrinterMode(std::string_view name, std::string_view mode);

// What the system's own printing service knows; nothing when there is none.
struct SystemQueues {
  std::vector<std::string> names;
  std::string usual;  // its default, ""
};
SystemQueues FindSystemQueues();

// Those of the settings, the queues that the settings do not name, and the folder
// printer; the default first. Never empty.
std::vector<PrinterSetup> FindPrinters(const FileSettings& settings, const SystemQueues& queues);

}  // namespace tpv
