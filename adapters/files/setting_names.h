// The settings of the program itself: paper (docs/paper.md) and safety copies.
#pragma once

#include <string_view>

namespace tpv {

inline constexpr std::string_view kTpv = "TPV";            // the application
inline constexpr std::string_view kPrinters = "Printers";  // a printer's name: its mode
inline constexpr std::string_view kDevices = "Devices";    // a device's name: its target
inline constexpr std::string_view kCodeTable = "CodeTable";  // a printer's name: its letters
inline constexpr std::string_view kSquareCode = "SquareCode";  // a printer's name: how it prints them
inline constexpr std::string_view kPaper = "Paper";        // these keys:
inline constexpr std::string_view kDefaultPrinter = "Default";
inline constexpr std::string_view kTicketFolder = "Tickets";
inline constexpr std::string_view kReportFolder = "Reports";
inline constexpr std::string_view kBackup = "Backup";  // safety copies, these keys:
inline constexpr std::string_view kBackupFolder = "Folder";
inline constexpr std::string_view kBackupKeep = "Keep";  // how many of a store stay

}  // namespace tpv
