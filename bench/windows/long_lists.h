// What the longest lists take: the time to their first painted rows, and memory.
#pragma once

#include <string>
#include <string_view>

namespace tpv::bench {

// "--sorted" is the search, sorted by description once it has been read.
inline constexpr std::string_view kLongLists[] = {"--journal", "--pending", "--search", "--sorted"};

// Fills a store with a month of 30,000 tickets, 50,000 open ones and a million articles.
void MakeStoreOfLongLists(const std::string& path);

// Shows one of kLongLists and prints its row of the table.
// In a process of its own: the memory is the process's.
void ShowLongList(const std::string& list, const std::string& path);

}  // namespace tpv::bench
