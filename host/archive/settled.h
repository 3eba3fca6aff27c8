// Which of a store's old tickets are settled, so that they can go to an archive: finished,
// collected, and paid by entries that old closures counted. A payment of several tickets
// goes with all of them or stays with all of them.
#pragma once

#include <string>

struct sqlite3;

namespace tpv::archive {

// "2020-01-01": what is older may go.
std::string FirstDayOf(int year);

// Makes temp.Quedan (Id): the tickets of before that day that stay in the store.
void MarkStaying(sqlite3* store, const std::string& day);

// The condition on a row of Cav that goes; it reads the table as it lies.
std::string Goes(const std::string& day);

// The condition on an entry (DiaCaj AS e): dated before and counted by a closure of before.
std::string CountedBefore(const std::string& day);

}  // namespace tpv::archive
