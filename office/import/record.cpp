#include "office/import/record.h"

#include <cmath>

#include "base/number_text.h"
#include "base/text.h"

namespace tpv::office {

namespace {

// The plain value of a cell with a number in it; the reason when there is none.
std::string PlainNumber(const DecimalMark& mark, const std::string& cell, bool whole,
                        std::string& reason) {
  const auto number = mark.Read(cell, reason);
  if (!number) return {};
  if (whole && *number != std::trunc(*number)) reason = "se espera un número entero";
  return ToPlain(*number);
}

}  // namespace

WantedRecord ReadRecord(std::span<const Field> fields, const ImportFile& file, const TableRow& row,
                        Findings& findings) {
  WantedRecord wanted{row.line, std::vector<std::optional<std::string>>(fields.size())};
  for (std::size_t i = 0; i < fields.size(); ++i) {
    const Field& field = fields[i];
    if (!file.heading.Has(field.name)) continue;
    const std::string& cell = file.heading.Cell(row, field.name);
    if (field.kind == FieldKind::Text) {
      wanted.values[i] = cell;
      continue;
    }
    if (Trim(cell).empty()) continue;
    std::string reason;
    wanted.values[i] = PlainNumber(file.mark, cell, field.kind == FieldKind::Whole, reason);
    if (reason.empty()) continue;
    findings.Refuse(row.line, field.name, reason);
    wanted.refused = true;
  }
  return wanted;
}

bool IsNew(const WantedRecord& wanted, const StoredRecord* stored, std::size_t field) {
  return wanted.values[field] &&
         (stored == nullptr || *wanted.values[field] != stored->values[field]);
}

void CheckTexts(std::span<const Field> fields, WantedRecord& wanted, const StoredRecord* stored,
                Findings& findings) {
  for (std::size_t i = 0; i < fields.size(); ++i) {
    if (fields[i].kind != FieldKind::Text || !IsNew(wanted, stored, i)) continue;
    const std::string& text = *wanted.values[i];
    const std::size_t most = MostCharacters(fields[i]);
    std::string reason;
    if (Length(text) > most) {
      reason =
          "tiene " + std::to_string(Length(text)) + " caracteres y caben " + std::to_string(most);
    } else if (most <= 20 && text.find_first_of("\r\n\t") != std::string::npos) {
      reason = "ocupa varias líneas o lleva tabuladores";
    }
    if (reason.empty()) continue;
    findings.Refuse(wanted.line, fields[i].name, reason);
    wanted.refused = true;
  }
}

std::string Changes(std::span<const Field> fields, const WantedRecord& wanted,
                    const StoredRecord* stored) {
  std::string words;
  for (std::size_t i = 0; i < fields.size(); ++i) {
    if (IsNew(wanted, stored, i)) AddWord(words, fields[i].name);
  }
  return words;
}

std::string ColumnsOf(std::span<const Field> fields, std::string_view table) {
  std::string columns;
  for (const Field& field : fields) {
    if (field.table == table) AddWord(columns, field.column);
  }
  return columns;
}

std::string ValuesOf(std::span<const Field> fields, std::string_view table,
                     const WantedRecord& wanted) {
  std::string values;
  for (std::size_t i = 0; i < fields.size(); ++i) {
    if (fields[i].table == table)
      AddWord(values, Literal(wanted.values[i].value_or(""), fields[i].kind));
  }
  return values;
}

std::string Assignments(std::span<const Field> fields, std::string_view table,
                        const WantedRecord& wanted, const StoredRecord* stored) {
  std::string text;
  for (std::size_t i = 0; i < fields.size(); ++i) {
    if (fields[i].table != table || !IsNew(wanted, stored, i)) continue;
    AddWord(text, fields[i].column + (" = " + Literal(*wanted.values[i], fields[i].kind)));
  }
  return text;
}

void AddWord(std::string& words, std::string_view word) {
  if (!words.empty()) words += ", ";
  words += word;
}

}  // namespace tpv::office
