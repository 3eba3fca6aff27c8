#include "host/fiscal_orders.h"

#include <ostream>
#include <stdexcept>

#include "fiscal/agency.h"
#include "fiscal/records.h"
#include "fiscal/sending.h"
#include "host/chosen_store.h"
#include "host/day_option.h"
#include "host/fiscal_export.h"
#include "host/fiscal_sending.h"
#include "host/machine.h"
#include "host/play.h"

namespace tpv {

namespace {

constexpr const char* kRecordsUsage =
    "fiscal export CARPETA [--from dd/mm/aaaa] [--to dd/mm/aaaa] [--store FICHERO|--odbc CONEXIÓN]";
constexpr const char* kSendUsage = "fiscal send [--store FICHERO|--odbc CONEXIÓN]";

}  // namespace

int ExportRecordsOrder(const Machine& machine, std::vector<std::string> arguments, std::ostream& out) {
  const auto from = TakeDayOption(arguments, "--from");
  const auto to = TakeDayOption(arguments, "--to");
  const std::string store = TakeChosenStore(machine.settings, arguments);
  if (arguments.size() != 1) throw UsageError(kRecordsUsage);
  const auto connection = OpenChosenStore(store, machine.clock);
  const long records = ExportRecords(*connection, arguments[0], from, to);
  out << "Exportado: " << records << " registros en " << arguments[0] << "\n";
  return 0;
}

int SendRecordsOrder(const Machine& machine, std::vector<std::string> arguments, std::ostream& out) {
  using End = fiscal::SendingRound::End;
  const std::string store = TakeChosenStore(machine.settings, arguments);
  if (!arguments.empty()) throw UsageError(kSendUsage);
  const auto agency = MakeAgency(machine.settings, {});
  if (agency == nullptr) throw std::runtime_error(AgencyObstacle(machine.settings));
  const auto connection = OpenChosenStore(store, machine.clock);
  const auto round = fiscal::SendOnce(*connection, *agency);
  out << fiscal::Told(round) << "\n";
  const auto waiting = fiscal::CountWaiting(*connection);
  if (waiting.count > 0) out << "Quedan " << waiting.count << " registros sin enviar\n";
  return round.end == End::NothingWaits || (round.end == End::Answered && waiting.count == 0) ? 0 : 1;
}

}  // namespace tpv
