// A shop's safety copies: made while tills sell, whole or not at all, and taken back
// without overwriting anything. For embedded stores.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "base/date_time.h"

namespace tpv {

class Clock;
class Settings;

struct BackupPlan {
  std::string store;   // its file
  std::string folder;  // made when it is not there
  int keep = 14;       // how many copies of this store stay; at least 1
};

// Where the settings say (Backup.Folder, Backup.Keep), a folder "copias" beside the
// store without them.
BackupPlan PlannedBackup(const Settings& settings, const std::string& store);

struct BackupResult {
  std::string path;  // the new copy
  // What the store's check finds broken: the copy is kept, and so are all older ones.
  std::string findings;
};

// Copies the store as it is at one moment, checks the copy, compresses it, reads it back
// and gives it its name; then the oldest ones that are too many go. Throws FileError and
// DatabaseError, and then the older copies are as they were. The store's tills go on.
BackupResult BackupStore(const BackupPlan& plan, const Clock& clock);

// The copies of that store in its folder, newest first.
std::vector<std::string> Backups(const BackupPlan& plan);
// When one of them was made, as its name says.
std::optional<DateTime> MadeAt(const BackupPlan& plan, const std::string& backup);
// When the newest was made; nullopt without one.
std::optional<DateTime> LastBackup(const BackupPlan& plan);

// Puts the copy where the store is. What was there is put aside under another name,
// which is returned; "" when nothing was. Nobody may have the store open. Throws FileError
// and DatabaseError, and then the store is as it was.
std::string RestoreStore(const std::string& backup, const std::string& store, const Clock& clock);

}  // namespace tpv
