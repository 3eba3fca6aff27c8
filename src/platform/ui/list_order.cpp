#include "platform/ui/list_order.h"

#include <algorithm>
#include <compare>
#include <functional>
#include <memory_resource>

#include "base/date_time.h"
#include "base/number_text.h"
#include "base/text.h"

namespace tpv::ui {

namespace {

// Kinds stand in this order.
enum class Kind : std::uint8_t { Empty, Number, Date, Text };

// What a row is sorted by.
struct SortKey {
  double number = 0;
  const char* text = "";  // a date's reads in time order
  std::uint32_t row = 0;
  Kind kind = Kind::Empty;
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

// Makes the keys and keeps their texts close together: a million rows may be sorted.
class SortKeys {
 public:
  void Add(const Variant& value, std::uint32_t row) {
    if (value.IsText()) return Add(value.ToText(), row);
    if (value.IsDate()) return AddText(Kind::Date, ToIso(value.ToDate()), row);
    value.IsNull() ? AddEmpty(row) : AddNumber(value.NumberOr(0), row);
  }

  void Add(const std::string& text, std::uint32_t row) {
    const std::string trimmed = Trim(text);
    if (trimmed.empty()) return AddEmpty(row);
    if (const auto date = ParseDayFirst(trimmed)) return AddText(Kind::Date, ToIso(*date), row);
    if (const auto number = ParseNumber(trimmed)) return AddNumber(*number, row);
    AddText(Kind::Text, FoldForSearch(trimmed), row);
  }

  void Reserve(std::size_t rows) { keys_.reserve(rows); }

  // Rows that are equal stay in their own order.
  const std::vector<SortKey>& Sorted(bool descending) {
    std::sort(keys_.begin(), keys_.end(), [descending](const SortKey& left, const SortKey& right) {
      const int order = Compare(left, right);
      if (order == 0) return left.row < right.row;
      return descending ? order > 0 : order < 0;
    });
    return keys_;
  }

 private:
  void AddEmpty(std::uint32_t row) { keys_.push_back({0, "", row, Kind::Empty}); }
  // A sum that comes out as -0 is none but 0.
  void AddNumber(double number, std::uint32_t row) { keys_.push_back({number + 0.0, "", row, Kind::Number}); }
  void AddText(Kind kind, std::string_view text, std::uint32_t row) {
    char* kept = static_cast<char*>(texts_.allocate(text.size() + 1, 1));
    kept[text.copy(kept, text.size())] = '\0';
    keys_.push_back({0, kept, row, kind});
  }

  static int Compare(const SortKey& left, const SortKey& right) {
    if (left.kind != right.kind) return left.kind < right.kind ? -1 : 1;
    if (const auto order = std::strong_order(left.number, right.number); order != 0) return order < 0 ? -1 : 1;
    return CompareTexts(left.text, right.text);
  }

  std::vector<SortKey> keys_;
  std::pmr::monotonic_buffer_resource texts_;
};

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
};

std::vector<Group> GroupsOf(const List& list) {
  const std::vector<std::string> words = Split(FoldForSearch(list.filter), " ");
  std::vector<Group> groups;
  for (int row = 0; row < list.RowCount();) {
    Group group{row, row + 1};
    std::string text = TextOf(list, row);
    for (; group.end < list.RowCount() && list.IsDetail(group.end); ++group.end) {
      text += TextOf(list, group.end);
    }
    row = group.end;
    if (HoldsAll(text, words)) groups.push_back(group);
  }
  return groups;
}

std::vector<Group> Sorted(const List& list, const std::vector<Group>& groups) {
  SortKeys keys;
  for (std::size_t i = 0; i < groups.size(); ++i) {
    const Variant* value = list.Content(groups[i].first, list.sorted_by);
    const auto place = static_cast<std::uint32_t>(i);
    value != nullptr ? keys.Add(*value, place) : keys.Add(list.Cell(groups[i].first, list.sorted_by), place);
  }
  std::vector<Group> sorted;
  for (const SortKey& key : keys.Sorted(list.descending)) sorted.push_back(groups[key.row]);
  return sorted;
}

}  // namespace

std::vector<int> OrderOf(const List& list) {
  std::vector<Group> groups = GroupsOf(list);
  if (list.sorted_by >= 0) groups = Sorted(list, groups);
  std::vector<int> order;
  for (const Group& group : groups) {
    for (int row = group.first; row < group.end; ++row) order.push_back(row);
  }
  return order;
}

std::vector<std::uint32_t> SortedBy(std::vector<std::uint32_t> rows, bool descending,
                                    const std::function<Variant(std::size_t row)>& value) {
  SortKeys keys;
  keys.Reserve(rows.size());
  for (const std::uint32_t row : rows) keys.Add(value(row), row);
  rows.clear();
  for (const SortKey& key : keys.Sorted(descending)) rows.push_back(key.row);
  return rows;
}

}  // namespace tpv::ui
