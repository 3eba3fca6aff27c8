// Takes out of a store what its archive holds, piece by piece: each piece is a transaction
// that leaves the books right, and one that is killed is taken again.
#pragma once

#include <cstdint>
#include <string>

#include "host/archive/books.h"

namespace tpv::sqlite {
class LoneStore;
}

namespace tpv::archive {

class Removal {
 public:
  // The archive is attached as "archivo"; `file` is its name.
  Removal(sqlite::LoneStore& store, const std::string& file, int year);

  // About so many tickets a piece. How many went. Throws DatabaseError when a book would not
  // stand as before, or the archive does not hold exactly what would go; the pieces before
  // that one are done.
  std::int64_t Run(std::int64_t tickets_a_piece);

 private:
  void Begin();
  void GatherTickets(std::int64_t from, std::int64_t to);
  void GatherPaymentsOut();
  std::int64_t TakeOut();
  void CarryOver();

  sqlite3* store_;
  std::string file_;
  int year_;
  Books books_;
  std::string archive_id_;
};

}  // namespace tpv::archive
