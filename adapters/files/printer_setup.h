// Which printers the till has, and how each of them prints.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/settings.h"

namespace tpv {

class FileSettings;
struct SystemQueues;

enum class PrinterMode {
  Folder,   // a text file and a PDF a document
  Receipt,  // escape codes to a target (channel.h)
  Page,     // pages to a queue of the printing system, which says what paper it has
  Roll,     // the same when it says so wrongly
  Sheets,
  Unknown,  // a mode that nobody understands: listed, but it cannot print
};

struct PrinterSetup {
  std::string name;
  PrinterMode mode = PrinterMode::Folder;
  std::string target;  // folder, target, queue or what is not understood; "" for the usual folder
};

inline constexpr std::string_view kFolderPrinter = "Carpeta de tickets";

// Reads "folder", "folder:/path", "escpos:TARGET", and "page", "roll" or "sheets", each
// with ":QUEUE" when the queue has another name.
std::optional<PrinterSetup> ParsePrinterMode(std::string_view name, std::string_view mode);

// The printer so named, "" for the default, when the settings alone say which it is.
std::optional<PrinterSetup> SettledPrinter(const FileSettings& settings, std::string_view name);

// Those of the settings, the queues that the settings do not name, and the folder
// printer; the default first. Never empty.
std::vector<PrinterSetup> FindPrinters(const FileSettings& settings, const SystemQueues& queues);

// Throws PrintError for a mode that nobody understands.
void RequireUnderstood(const PrinterSetup& printer);
// Why a document on sheets does not come out of it.
std::string NeedsSheets(const std::string& printer);
// The line of work (work_lines.h) of whatever has this target: a drawer behind a printer
// shares the printer's.
std::string LineOf(const std::string& target);

}  // namespace tpv
