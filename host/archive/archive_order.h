// Putting a shop's old years aside: an archive beside the store, made and checked first, and
// then what is settled in it taken out of the store.
#pragma once

#include <cstdint>
#include <string>

namespace tpv {

class Clock;

struct ArchiveOrder {
  std::string store;    // its file
  std::string archive;  // made, or continued when it is of that store and year
  int year = 0;         // what is older than its first of January goes
  bool shrink = true;   // the store's file is made smaller afterwards
  std::int64_t tickets_a_piece = 50'000;
};

struct ArchiveResult {
  bool nothing = false;         // is settled, and no file was made
  bool continued = false;       // the archive was there already
  std::int64_t removed = 0;     // tickets
  std::int64_t staying = 0;     // tickets of those years that are not settled
  std::int64_t bytes_before = 0, bytes_after = 0;
  double making = 0, removing = 0, shrinking = 0;  // seconds
  std::string not_shrunk;       // why the file is as large as before; "" when it is not
};

// "tienda-hasta-2019.db" for what is older than 2020.
std::string ArchiveName(const std::string& store, int year);

// Throws DatabaseError with what is wrong, for the operator. Whatever happens, a ticket is in
// the store or in an archive that was checked; running again goes on where it stopped.
ArchiveResult ArchiveYears(const ArchiveOrder& order, const Clock& clock);

}  // namespace tpv
