// What a script does with any list: sorts it, takes it away.
#include <algorithm>

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

}  // namespace tpv::scenario
