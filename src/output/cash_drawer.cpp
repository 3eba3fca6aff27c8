#include "output/cash_drawer.h"

#include <string>

#include "base/number_text.h"
#include "base/text.h"
#include "context/context.h"
#include "output/ticket_text.h"
#include "platform/printer.h"

namespace tpv {

namespace {

enum class DrawerMethod { PrinterCodes = 1, Device = 2, PrinterLine = 3, ParallelPort = 4 };

// "27,112,0" as the bytes with these codes; a piece that is no number is code 0.
std::string Bytes(std::string_view codes) {
  std::string bytes;
  if (Trim(codes).empty()) return bytes;
  for (const std::string& piece : Split(codes, ",")) {
    bytes += static_cast<char>(static_cast<unsigned char>(Int32OrZero(piece)));
  }
  return bytes;
}

void SendCodes(Context& context, const std::string& bytes) {
  if (!bytes.empty()) context.ports.printers.SendRaw(bytes);
}

void WriteToPort(Context& context, const std::string& bytes) {
  if (!bytes.empty()) context.ports.devices.Write("LPT1", bytes + std::string(kLineBreak));
}

void Kick(Context& context, DrawerMethod method) {
  switch (method) {
    case DrawerMethod::PrinterCodes:
      return SendCodes(context, Bytes(context.Parameter("Par_SCajon").TextOr("")));
    case DrawerMethod::Device:
      return context.ports.devices.Write(context.Parameter("Par_sCajon").TextOr(""),
                                         std::string(60, '\0') + std::string(kLineBreak));
    case DrawerMethod::PrinterLine:
      return PrintOpeningLine(context);
    case DrawerMethod::ParallelPort:
      return WriteToPort(context, Bytes(context.Parameter("Par_SCajon").TextOr("")));
  }
}

}  // namespace

void OpenDrawer(Context& context) {
  const auto method = static_cast<DrawerMethod>(context.Parameter("Par_PCajon").IntOr(0));
  try {
    Kick(context, method);
  } catch (const PrintError&) {
    // An absent printer or port leaves the drawer closed; the sale goes on.
  }
}

}  // namespace tpv
