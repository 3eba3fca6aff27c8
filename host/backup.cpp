#include "host/backup.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <functional>

#include "adapters/files/gzip.h"
#include "adapters/files/private_files.h"
#include "adapters/files/setting_names.h"
#include "adapters/sqlite/folder.h"
#include "adapters/sqlite/sqlite_connection.h"
#include "adapters/sqlite/store_file.h"
#include "base/number_text.h"
#include "host/store_check.h"
#include "platform/clock.h"
#include "platform/settings.h"

namespace tpv {

namespace {

namespace fs = std::filesystem;

constexpr const char* kEnding = ".db.gz";
constexpr const char* kPartial = ".parcial";

// "20261124-103000"
std::string Stamp(const DateTime& moment) {
  char text[96];
  std::snprintf(text, sizeof text, "%04d%02d%02d-%02d%02d%02d", moment.year, moment.month,
                moment.day, moment.hour, moment.minute, moment.second);
  return text;
}

std::optional<DateTime> Moment(std::string_view stamp) {
  DateTime moment;
  char rest = 0;
  const std::string text(stamp);
  if (text.size() != 15 ||
      std::sscanf(text.c_str(), "%4d%2d%2d-%2d%2d%2d%c", &moment.year, &moment.month, &moment.day,
                  &moment.hour, &moment.minute, &moment.second, &rest) != 6 ||
      !IsValid(moment)) {
    return std::nullopt;
  }
  return moment;
}

std::string Stem(const BackupPlan& plan) { return fs::path(plan.store).stem().string(); }

// A file on the way to its name; what an interrupted program left of it goes first.
class PartialFile {
 public:
  explicit PartialFile(std::string path) : path_(std::move(path)) {
    sqlite::RemoveWithJournals(path_);
  }
  ~PartialFile() { sqlite::RemoveWithJournals(path_); }
  PartialFile(const PartialFile&) = delete;
  PartialFile& operator=(const PartialFile&) = delete;

  const std::string& path() const { return path_; }
  void Keep(const std::string& name) {
    if (!sqlite::RenameToFree(path_, name)) throw FileError("Ya existe «" + name + "»");
  }

 private:
  std::string path_;
};

void RequireSound(SqliteConnection& connection, const std::string& what) {
  const std::vector<std::string> damage = connection.Damage();
  if (!damage.empty()) throw DatabaseError(what + " está dañado: " + damage.front());
}

// Throws when the copy is damaged; what the store's own rules find is told.
std::string CheckCopy(const std::string& copy, const Clock& clock) {
  SqliteConnection connection(copy, clock, OpenMode::AsItIs);
  RequireSound(connection, "El almacén");
  const auto findings = CheckStore(connection);
  return AnyBroken(findings) ? FindingsText(findings) : std::string();
}

void RemoveOldest(const BackupPlan& plan) {
  const std::vector<std::string> backups = Backups(plan);
  const auto keep = static_cast<std::size_t>(std::max(plan.keep, 1));
  for (std::size_t i = keep; i < backups.size(); ++i) ::unlink(backups[i].c_str());
}

// A name for what is put aside that nobody has.
std::string AsideName(const std::string& store, const Clock& clock) {
  const std::string word = "antes-" + Stamp(clock.Now());
  std::string name = sqlite::Beside(store, word);
  for (int number = 2; sqlite::IsThere(name); ++number) {
    name = sqlite::Beside(store, word + "-" + std::to_string(number));
  }
  return name;
}

// The last to leave a store takes its log along: one that stays is in use.
void RequireUnused(const std::string& store) {
  {
    const sqlite::Handle alone = sqlite::OpenFile(store);
    if (!sqlite::LacksItsLog(alone.get())) sqlite::Settle(alone.get());
  }
  if (sqlite::IsThere(store + "-wal")) {
    throw DatabaseError("«" + store + "» está en uso: cierre antes todas sus cajas");
  }
}

// The file first, so that it never stands without its log under its name.
void PutAside(const std::string& store, const std::string& aside) {
  std::vector<std::string> endings{""};
  endings.insert(endings.end(), std::begin(sqlite::kJournals), std::end(sqlite::kJournals));
  for (const std::string& ending : endings) {
    if (!sqlite::IsThere(store + ending)) continue;
    if (!sqlite::RenameToFree(store + ending, aside + ending)) {
      throw FileError("Ya existe «" + aside + ending + "»");
    }
  }
}

bool AnythingThere(const std::string& store) {
  return sqlite::IsThere(store) ||
         std::any_of(std::begin(sqlite::kJournals), std::end(sqlite::kJournals),
                     [&](const char* ending) { return sqlite::IsThere(store + ending); });
}

}  // namespace

BackupPlan PlannedBackup(const Settings& settings, const std::string& store) {
  BackupPlan plan;
  plan.store = fs::absolute(store).lexically_normal().string();
  plan.folder = ExpandHome(settings.Read(kTpv, kBackup, kBackupFolder));
  if (plan.folder.empty()) plan.folder = (fs::path(plan.store).parent_path() / "copias").string();
  const auto keep = ParseInt32(settings.Read(kTpv, kBackup, kBackupKeep));
  if (keep && *keep > 0) plan.keep = *keep;
  return plan;
}

BackupResult BackupStore(const BackupPlan& plan, const Clock& clock) {
  MakePrivateFolder(plan.folder);
  const auto in_folder = [&](const std::string& name) {
    return (fs::path(plan.folder) / name).string();
  };
  BackupResult result;
  result.path = in_folder(Stem(plan) + "-" + Stamp(clock.Now()) + kEnding);
  const sqlite::FolderLock folder(result.path);
  PartialFile copy(in_folder(Stem(plan) + kPartial));
  SqliteConnection(plan.store, clock, OpenMode::AsItIs).CopyTo(copy.path());
  result.findings = CheckCopy(copy.path(), clock);
  PartialFile compressed(in_folder(Stem(plan) + ".gz" + kPartial));
  CompressFile(copy.path(), compressed.path());
  if (ExpandedSize(compressed.path()) != fs::file_size(copy.path())) {
    throw FileError("La copia de «" + plan.store + "» no se lee como se escribió");
  }
  compressed.Keep(result.path);
  folder.Sync();
  if (result.findings.empty()) RemoveOldest(plan);
  return result;
}

std::optional<DateTime> MadeAt(const BackupPlan& plan, const std::string& backup) {
  const std::string name = fs::path(backup).filename().string();
  const std::string begin = Stem(plan) + "-";
  if (!name.starts_with(begin) || !name.ends_with(kEnding)) return std::nullopt;
  return Moment(std::string_view(name).substr(
      begin.size(), name.size() - begin.size() - std::string_view(kEnding).size()));
}

std::vector<std::string> Backups(const BackupPlan& plan) {
  std::vector<std::string> paths;
  std::error_code error;
  for (const auto& entry : fs::directory_iterator(plan.folder, error)) {
    if (MadeAt(plan, entry.path().string())) paths.push_back(entry.path().string());
  }
  std::sort(paths.begin(), paths.end(), std::greater<>());
  return paths;
}

std::optional<DateTime> LastBackup(const BackupPlan& plan) {
  const std::vector<std::string> backups = Backups(plan);
  return backups.empty() ? std::nullopt : MadeAt(plan, backups.front());
}

std::string RestoreStore(const std::string& backup, const std::string& store, const Clock& clock) {
  PartialFile restored(store + ".restaurado" + kPartial);
  ExpandFile(backup, restored.path());
  {
    SqliteConnection connection(restored.path(), clock);
    RequireSound(connection, "La copia «" + backup + "»");
  }
  if (sqlite::IsThere(store)) RequireUnused(store);
  const sqlite::FolderLock folder(store);
  std::string aside;
  if (AnythingThere(store)) PutAside(store, aside = AsideName(store, clock));
  sqlite::SyncFile(restored.path());
  restored.Keep(store);
  folder.Sync();
  return aside;
}

}  // namespace tpv
