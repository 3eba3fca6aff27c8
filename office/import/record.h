// A row of a file beside the row of the store that it is about.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <vector>

#include "office/fields.h"
#include "office/import/target.h"

namespace tpv::office {

struct StoredRecord {
  std::int32_t id = 0;
  std::vector<std::string> values;  // of the fields, as PlainValue gives them
};

struct WantedRecord {
  long line = 0;
  std::vector<std::optional<std::string>> values;  // of the fields; nullopt leaves as it is
  bool refused = false;
};

// Reads the cells of the fields. An empty number is left as it is, an empty text is empty.
WantedRecord ReadRecord(std::span<const Field> fields, const ImportFile& file, const TableRow& row,
                        Findings& findings);

// Whether the value is another than the stored one; without one every value is.
bool IsNew(const WantedRecord& wanted, const StoredRecord* stored, std::size_t field);

// Refuses new texts that are too long, and keys and codes of several lines.
void CheckTexts(std::span<const Field> fields, WantedRecord& wanted, const StoredRecord* stored,
                Findings& findings);

// The names of the fields that are new: "precio, existencias".
std::string Changes(std::span<const Field> fields, const WantedRecord& wanted,
                    const StoredRecord* stored);

// Of one table's fields: "CLI_NOM, CLI_APE1" and their values, or "CLI_NOM = N'Ana'";
// "" when none is new.
std::string ColumnsOf(std::span<const Field> fields, std::string_view table);
std::string ValuesOf(std::span<const Field> fields, std::string_view table,
                     const WantedRecord& wanted);
std::string Assignments(std::span<const Field> fields, std::string_view table,
                        const WantedRecord& wanted, const StoredRecord* stored);

// Adds "what" to a list of words.
void AddWord(std::string& words, std::string_view word);

}  // namespace tpv::office
