// The folder of a store: who makes files in it, their names, and that they are on the disk.
#pragma once

#include <string>

namespace tpv::sqlite {

// One program at a time makes, copies or upgrades stores in a folder: waits for
// the others. Ends with its owner, or with the program.
class FolderLock {
 public:
  // Of the folder that the file is or will be in. Throws DatabaseError when there is none.
  explicit FolderLock(const std::string& file);
  ~FolderLock();
  FolderLock(const FolderLock&) = delete;
  FolderLock& operator=(const FolderLock&) = delete;

  // The names in the folder survive a power cut. Throws DatabaseError.
  void Sync() const;

 private:
  int folder_;
};

// Whether there is anything of that name; a link counts wherever it leads.
bool IsThere(const std::string& path);
// The file's bytes survive a power cut; nobody may have it open. Throws DatabaseError.
void SyncFile(const std::string& path);
// False when the new name is taken; then nothing has changed. Throws DatabaseError.
bool RenameToFree(const std::string& from, const std::string& to);
// A file that is half made, and what was laid beside it for those who write to it.
void RemoveWithJournals(const std::string& file);
inline constexpr const char* kJournals[] = {"-wal", "-shm", "-journal"};
// What its tills wait in for each other.
inline constexpr const char* kLine = "-turnos";
// "tienda.db" and a word: "tienda.word.db".
std::string Beside(const std::string& path, const std::string& word);

}  // namespace tpv::sqlite
