// The settings of the program itself about paper (docs/paper.md).
#pragma once

#include <string_view>

namespace tpv {

inline constexpr std::string_view kTpv = "TPV";            // the application
inline constexpr std::string_view kPrinters = "Printers";  // a printer's name: its mode
inline constexpr std::string_view kDevices = "Devices";    // a device's name: its target
inline constexpr std::string_view kCodeTable = "CodeTable";  // a printer's name: its letters
inline constexpr std::string_view kPaper = "Paper";        // these keys:
inline constexpr std::string_view kDefaultPrinter = "Default";
inline constexpr std::string_view kTicketFolder = "Tickets";
inline constexpr std::string_view kReportFolder = "Reports";

}  // namespace tpv
