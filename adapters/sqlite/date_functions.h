// Dates in SQL: kept as "YYYY-MM-DD HH:MM:SS.mmm", written day first.
#pragma once

#include <sqlite3.h>

#include <string>

namespace tpv::sqlite {

void DateFunction(sqlite3_context* context, int, sqlite3_value** values);      // tpv_date(value)
void StyledDateFunction(sqlite3_context* context, int, sqlite3_value** values);  // (text, style)
void DayFunction(sqlite3_context* context, int, sqlite3_value** values);       // tpv_day(date)
void DatePartFunction(sqlite3_context* context, int, sqlite3_value** values);  // (part, date)
void DateAddFunction(sqlite3_context* context, int, sqlite3_value** values);   // (part, n, date)
void DateDiffFunction(sqlite3_context* context, int, sqlite3_value** values);  // (part, from, to)

// A kept date in one of CONVERT's styles; the dialect's default when unknown.
std::string DateAsText(const std::string& kept, int style);

}  // namespace tpv::sqlite
