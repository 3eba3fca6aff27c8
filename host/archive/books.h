// What archiving must leave as it is: every customer's debt, every till's state and
// balance, the cash that no closure has counted, the next numbers, the chain's end, stock,
// and what each closure counted, here and in archives together.
#pragma once

#include <string>

struct sqlite3;

namespace tpv::archive {

class Books {
 public:
  // On a store whose temp.Cierres (Id) names the closures concerned.
  explicit Books(sqlite3* store);

  // Keeps how they stand now.
  void Note();
  // Throws DatabaseError with the first that stands otherwise.
  void RequireSame() const;

 private:
  sqlite3* store_;
};

}  // namespace tpv::archive
