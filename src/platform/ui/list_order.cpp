#include "platform/ui/list_order.h"

#include <algorithm>
#include <functional>

#include "base/date_time.h"
#include "base/number_text.h"
#include "base/text.h"

namespace tpv::ui {

namespace {

// Kinds stand in this order.
struct SortKey {
  enum Kind { Empty, Number, Date, Text } kind = Empty;
  double number = 0;
  DateTime date{};
  std::string text;
};

std::string_view Digits(std::string_view text) {
  std::size_t length = 0;
  while (length < text.size() && IsDigit(text[length])) ++length;
  return text.substr(0, length);
}

// "T/9" stands before "T/10".
int CompareTexts(std::string_view left, std::string_view right) {
  while (!left.empty() && !right.empty()) {
    if (IsDigit(left[0]) && IsDigit(right[0])) {
      const std::string_view a = Digits(left);
      const std::string_view b = Digits(right);
      left.remove_prefix(a.size());
      right.remove_prefix(b.size());
      const std::string_view x = a.substr(std::min(a.find_first_not_of('0'), a.size()));
      const std::string_view y = b.substr(std::min(b.find_first_not_of('0'), b.size()));
      if (x.size() != y.size()) return x.size() < y.size() ? -1 : 1;
      if (const int order = x.compare(y); order != 0) return order;
      continue;
    }
    if (left[0] != right[0]) {
      return static_cast<unsigned char>(left[0]) < static_cast<unsigned char>(right[0]) ? -1 : 1;
    }
    left.remove_prefix(1);
    right.remove_prefix(1);
  }
  return static_cast<int>(!left.empty()) - static_cast<int>(!right.empty());
}

SortKey KeyOfText(const std::string& text) {
  const std::string trimmed = Trim(text);
  if (trimmed.empty()) return {};
  if (const auto date = ParseDayFirst(trimmed)) return {SortKey::Date, 0, *date, {}};
  if (const auto number = ParseNumber(trimmed)) return {SortKey::Number, *number, {}, {}};
  return {SortKey::Text, 0, {}, FoldForSearch(trimmed)};
}

SortKey KeyOf(const Variant& value) {
  if (value.IsNull()) return {};
  if (value.IsDate()) return {SortKey::Date, 0, value.ToDate(), {}};
  if (value.IsText()) return KeyOfText(value.ToText());
  return {SortKey::Number, value.NumberOr(0), {}, {}};
}

SortKey KeyOf(const List& list, int row, int column) {
  const Variant* value = list.Content(row, column);
  return value != nullptr ? KeyOf(*value) : KeyOfText(list.Cell(row, column));
}

bool Before(const SortKey& left, const SortKey& right) {
  if (left.kind != right.kind) return left.kind < right.kind;
  if (left.kind == SortKey::Number) return left.number < right.number;
  if (left.kind == SortKey::Date) return left.date < right.date;
  return left.kind == SortKey::Text && CompareTexts(left.text, right.text) < 0;
}

// What the eye reads of a row.
std::string TextOf(const List& list, int row) {
  std::string text;
  for (int column = 0; column < static_cast<int>(list.layout.size()); ++column) {
    if (!list.layout[static_cast<std::size_t>(column)].hidden) text += list.Cell(row, column) + '\n';
  }
  return text;
}

bool HoldsAll(const std::string& text, const std::vector<std::string>& words) {
  const std::string folded = FoldForSearch(text);
  return std::all_of(words.begin(), words.end(), [&](const std::string& word) {
    return folded.find(word) != std::string::npos;
  });
}

// A row and its details.
struct Group {
  int first = 0;
  int end = 0;
  SortKey key;
};

std::vector<Group> GroupsOf(const List& list) {
  const std::vector<std::string> words = Split(FoldForSearch(list.filter), " ");
  std::vector<Group> groups;
  for (int row = 0; row < list.RowCount();) {
    Group group{row, row + 1, {}};
    std::string text = TextOf(list, row);
    for (; group.end < list.RowCount() && list.IsDetail(group.end); ++group.end) {
      text += TextOf(list, group.end);
    }
    row = group.end;
    if (!HoldsAll(text, words)) continue;
    if (list.sorted_by >= 0) group.key = KeyOf(list, group.first, list.sorted_by);
    groups.push_back(std::move(group));
  }
  return groups;
}

}  // namespace

std::vector<int> OrderOf(const List& list) {
  std::vector<Group> groups = GroupsOf(list);
  if (list.sorted_by >= 0) {
    std::stable_sort(groups.begin(), groups.end(), [&](const Group& left, const Group& right) {
      return list.descending ? Before(right.key, left.key) : Before(left.key, right.key);
    });
  }
  std::vector<int> order;
  for (const Group& group : groups) {
    for (int row = group.first; row < group.end; ++row) order.push_back(row);
  }
  return order;
}

std::vector<std::uint32_t> SortedBy(std::vector<std::uint32_t> rows, bool descending,
                                    const std::function<Variant(std::size_t row)>& value) {
  std::vector<std::pair<SortKey, std::uint32_t>> keyed;
  for (const std::uint32_t row : rows) keyed.emplace_back(KeyOf(value(row)), row);
  std::stable_sort(keyed.begin(), keyed.end(), [&](const auto& left, const auto& right) {
    return descending ? Before(right.first, left.first) : Before(left.first, right.first);
  });
  for (std::size_t i = 0; i < rows.size(); ++i) rows[i] = keyed[i].second;
  return rows;
}

}  // namespace tpv::ui
