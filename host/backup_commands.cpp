#include "host/backup_commands.h"

#include <algorithm>
#include <filesystem>
#include <ostream>

#include "adapters/files/private_files.h"
#include "base/number_text.h"
#include "host/backup.h"
#include "host/chosen_store.h"
#include "host/machine.h"
#include "host/play.h"

namespace tpv {

namespace {

constexpr const char* kBackupUsage = "store backup [FICHERO] [--to CARPETA] [--keep N]";
constexpr const char* kRestoreUsage = "store restore COPIA FICHERO";

std::string TakeOption(std::vector<std::string>& arguments, const char* option) {
  const auto at = std::find(arguments.begin(), arguments.end(), option);
  if (at == arguments.end()) return {};
  if (at + 1 == arguments.end()) throw UsageError(kBackupUsage);
  std::string value = *(at + 1);
  arguments.erase(at, at + 2);
  return value;
}

}  // namespace

int BackupCommand(const Machine& machine, std::vector<std::string> arguments, std::ostream& out) {
  const std::string folder = TakeOption(arguments, "--to");
  const std::string keep = TakeOption(arguments, "--keep");
  if (arguments.size() > 1 || (!arguments.empty() && arguments[0].starts_with("-"))) {
    throw UsageError(kBackupUsage);
  }
  const std::string store = arguments.empty() ? RememberedStore(machine.settings) : arguments[0];
  if (IsServerStore(store)) {
    throw UsageError(
        "store backup: las copias de un servidor las hace su administrador (docs/sql-server.md)");
  }
  if (!std::filesystem::exists(store)) throw FileError("No existe el almacén «" + store + "»");
  BackupPlan plan = PlannedBackup(machine.settings, store);
  if (!folder.empty()) plan.folder = ExpandHome(folder);
  if (!keep.empty()) {
    const auto number = ParseInt32(keep);
    if (!number || *number < 1) throw UsageError("--keep: se espera un número desde 1");
    plan.keep = *number;
  }
  const BackupResult result = BackupStore(plan, machine.clock);
  out << "Copia guardada en " << result.path << "\n";
  if (result.findings.empty()) return 0;
  out << result.findings
      << "El almacén tiene errores: no se ha borrado ninguna copia anterior. Llame a soporte\n";
  return 1;
}

int RestoreCommand(const Machine& machine, const std::vector<std::string>& arguments,
                   std::ostream& out) {
  if (arguments.size() != 2) throw UsageError(kRestoreUsage);
  const std::string aside = RestoreStore(arguments[0], arguments[1], machine.clock);
  out << "Recuperado en " << arguments[1] << "\n";
  if (!aside.empty()) out << "Lo que había está en " << aside << "\n";
  return 0;
}

}  // namespace tpv
