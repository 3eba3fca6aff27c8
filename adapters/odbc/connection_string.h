// An ODBC connection string as its pairs, and the data sources and drivers that
// the machine knows by name. For the adapter's own files.
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tpv::odbc {

// Keys and values as they are written, braces included.
using Pairs = std::vector<std::pair<std::string, std::string>>;

// Throws TargetError for text that is no connection string.
Pairs ReadPairs(std::string_view text);
std::string Written(const Pairs& pairs);

// The value of the first pair with one of these keys, whatever their case, without
// its braces; "" when there is none.
std::string Find(const Pairs& pairs, std::initializer_list<std::string_view> keys);
bool Has(const Pairs& pairs, std::initializer_list<std::string_view> keys);
void Remove(Pairs& pairs, std::initializer_list<std::string_view> keys);

// Braces around what drivers take for their own.
std::string Braced(const std::string& value);

// The string's pairs and behind them what its data source adds.
Pairs WithDataSource(const Pairs& pairs);
// The library of the driver that these pairs name; "" for a name nobody knows.
std::string DriverLibrary(const Pairs& pairs);

}  // namespace tpv::odbc
