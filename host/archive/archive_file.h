// An archive: a store's old years in a file of their own, which is only looked at.
#pragma once

#include <string>

namespace tpv {
class Clock;
}
namespace tpv::sqlite {
class LoneStore;
}

namespace tpv::archive {

// Copies what goes (settled.h: the store's marks are made) with all that it stands on, and
// gives the file its name once the store's own check finds it sound. Never overwrites.
// Throws DatabaseError, and then there is no such file.
void MakeArchive(sqlite::LoneStore& store, const std::string& path, int year, const Clock& clock);

// Whether the file is an archive of that store up to that year; throws when it is something
// else.
bool IsArchiveOf(const std::string& path, const sqlite::LoneStore& store, int year);

}  // namespace tpv::archive
