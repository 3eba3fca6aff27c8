// What a script does with any list: sorts it, takes it away.
#include <algorithm>

#include "adapters/headless/scenario/display.h"
#include "adapters/headless/scenario/player.h"
#include "base/number_text.h"
#include "base/text.h"

namespace tpv::scenario {

namespace {

// By number, or by what stands over it.
int ColumnOf(const ui::List& list, const std::string& word) {
  const auto named = std::find_if(list.layout.begin(), list.layout.end(), [&](const ui::GridColumn& column) {
    return !column.hidden && EqualNoCase(column.caption, word);
  });
  if (named != list.layout.end()) return static_cast<int>(named - list.layout.begin());
  const auto number = ParseInt32(word);
  if (!number) throw Failure(list.name + " no tiene la columna «" + word + "»", true);
  return *number;
}

}  // namespace

void Player::Sort(const Command& command) {
  auto& list = FindAs<ui::List>(command.Argument(0));
  hands_.Sort(list, ColumnOf(list, command.Argument(1)));
}

void Player::HandleMatches(const Command& command) {
  const std::string& what = command.Argument(1);
  if (command.Verb() == "export") return hands_.ExportMatches(what);
  if (command.Verb() == "menu") return hands_.ChooseSearchMenu(what);
  const auto column = ParseInt32(what);
  if (!column || *column < 0) command.Fail("«" + what + "» no es un número de columna");
  hands_.SortMatches(static_cast<std::size_t>(*column));
}

void Player::Export(const Command& command) {
  auto& list = FindAs<ui::List>(command.Argument(0));
  if (!list.form.GivesListsAway()) throw Failure(list.form.name + " no exporta sus listas", true);
  list.form.ExportList(list, command.Argument(1));
}

void Player::ExpectExported(const std::string& line) {
  const bool known = rig_.tables != nullptr &&
                     std::find(rig_.tables->lines.begin(), rig_.tables->lines.end(), line) != rig_.tables->lines.end();
  if (!known) throw Failure("expected the exported line \"" + line + "\", found no such line", false);
}

void Player::ExpectReport(const std::string& line) {
  for (const tpv::Report& report : rig_.reports.reports) {
    for (const std::string& shown : Split(ReportText(report), "\n")) {
      if (TrimRight(shown) == line) return;
    }
  }
  throw Failure("expected the report's line \"" + line + "\", found no such line", false);
}

}  // namespace tpv::scenario
