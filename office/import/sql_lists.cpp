#include "office/import/sql_lists.h"

#include "data/sql_text.h"

namespace tpv::office {

namespace {

constexpr std::size_t kLength = 400;

template <typename Values, typename Text>
std::string List(const Values& values, Text text) {
  std::string list;
  for (const auto& value : values) list += (list.empty() ? "" : ", ") + text(value);
  const std::string last = ", " + text(values.back());
  for (std::size_t i = values.size(); i < kLength; ++i) list += last;
  return list;
}

}  // namespace

std::string TextList(const std::vector<std::string>& values) {
  return List(values, [](const std::string& value) { return sql::Quoted(value); });
}

std::string NumberList(const std::vector<std::int64_t>& values) {
  return List(values, [](std::int64_t value) { return sql::Number(value); });
}

}  // namespace tpv::office
