// What a script can expect of screens, store and output.
#include <algorithm>
#include <functional>
#include <map>

#include "adapters/headless/scenario/display.h"
#include "adapters/headless/scenario/player.h"
#include "base/number_text.h"
#include "base/text.h"
#include "component/dispatch.h"

namespace tpv::scenario {

namespace {

std::string Truth(bool value) { return value ? "True" : "False"; }

// "3 from 2: Leche | 0,96 € | 8436210000011 95, …": how many modules the bars have.
std::string LabelsOf(const Rig& rig) {
  if (rig.premises.labels == nullptr) throw Failure("aquí no se hacen etiquetas", true);
  const RecordingLabels& made = *rig.premises.labels;
  std::string text = std::to_string(made.labels.size()) + " from " + std::to_string(made.used + 1);
  const Label* last = nullptr;
  for (const Label& label : made.labels) {
    const bool again = last != nullptr && label == *last;
    last = &label;
    if (again) continue;
    text += " | " + label.name + " | " + label.price + " | " + label.code + " | " + std::to_string(label.bars.size());
  }
  return text;
}

}  // namespace

void Player::ExpectEqual(const std::string& expected, const std::string& found) {
  if (ReplaceAll(expected, kLineBreak, "\n") == ReplaceAll(found, kLineBreak, "\n")) return;
  throw Failure("expected \"" + expected + "\", found \"" + found + "\"", false);
}

void Player::Expect(const Command& command) {
  const auto argument = [&](std::size_t index) -> const std::string& {
    return command.Argument(index);
  };
  const std::map<std::string, std::function<void()>, std::less<>> kinds = {
      {"enabled", [&] { ExpectEqual(argument(2), Truth(Find(argument(1)).IsEnabled())); }},
      {"visible", [&] { ExpectEqual(argument(2), Truth(Find(argument(1)).IsVisible())); }},
      {"focus",
       [&] {
         const ui::Control* focus = Screen().focus;
         ExpectEqual(Find(argument(1)).name, focus != nullptr ? focus->name : "none");
       }},
      {"rows", [&] { ExpectEqual(argument(2), std::to_string(RowCount(Find(argument(1))))); }},
      {"current", [&] { ExpectEqual(argument(2), std::to_string(CurrentRow(Find(argument(1))))); }},
      {"band", [&] { ExpectEqual(argument(2), InBand(Screen(), argument(1))); }},
      {"cell", [&] { ExpectCell(command); }},
      {"value",
       [&] { ExpectEqual(argument(3), ValueOf(FindAs<ui::Chart>(argument(1)).data, argument(2))); }},
      {"property",
       [&] {
         const std::uint32_t id = DispatchId(argument(1));
         ExpectEqual(argument(2), Invoke(*rig_.component, id, InvokeKind::Get, {}).ToPlainText());
       }},
      {"matches", [&] { ExpectEqual(argument(1), std::to_string(hands_.Matches().size())); }},
      {"match",
       [&] { ExpectEqual(argument(2), hands_.Matches().at(Int32OrZero(argument(1)))); }},
      {"title", [&] { ExpectEqual(argument(1), Screen().Title()); }},
      {"sound", [&] { ExpectEqual(argument(1), rig_.sound.asked_for ? "error" : "none"); }},
      {"screen",
       [&] { ExpectEqual(argument(1), hands_.Top() != nullptr ? hands_.Top()->name : "none"); }},
      {"sql", [&] { ExpectSql(command); }},
      {"call",
       [&] {
         Command call = command;
         call.words.erase(call.words.begin() + 3);  // the expected value
         ExpectEqual(argument(2), CallMember(call, 1).ToPlainText());
       }},
      {"printed", [&] { ExpectPrinted(argument(1)); }},
      {"documents",
       [&] { ExpectEqual(argument(1), std::to_string(rig_.printers.documents.size())); }},
      {"device", [&] { ExpectEqual(argument(2), Hex(rig_.devices.written[argument(1)])); }},
      {"raw", [&] { ExpectEqual(argument(1), Hex(rig_.printers.raw_bytes)); }},
      {"mails", [&] { ExpectEqual(argument(1), std::to_string(rig_.mail.mails.size())); }},
      {"mail", [&] { ExpectMail(argument(1)); }},
      {"exported", [&] { ExpectExported(argument(1)); }},
      {"report", [&] { ExpectReport(argument(1)); }},
      {"labels", [&] { ExpectEqual(argument(1), LabelsOf(rig_)); }},
      {"setting",
       [&] { ExpectEqual(argument(1), rig_.settings.Read("OKRA", "Printer", "Spool")); }},
      {"printer", [&] { ExpectEqual(argument(1), rig_.printers.last_printer); }},
      {"progress",
       [&] {
         const bool came = std::find(stages_.begin(), stages_.end(), argument(1)) != stages_.end();
         if (!came) throw Failure("expected long work at: " + argument(1), false);
       }},
      {"notice",
       [&] {
         const std::string told = hands_.Notices();
         if (told.find(argument(1)) == std::string::npos) {
           throw Failure("expected a notice with \"" + argument(1) + "\", found \"" + told + "\"", false);
         }
       }},
      {"sent",
       [&] {
         const auto& sent = rig_.connection.sent;
         const bool found = std::find(sent.begin(), sent.end(), argument(1)) != sent.end();
         if (!found) throw Failure("expected the statement sent: " + argument(1), false);
       }},
  };
  const auto kind = kinds.find(argument(0));
  if (kind != kinds.end()) return kind->second();
  ExpectEqual(argument(1), TextOf(Find(argument(0))));
}

void Player::ExpectSql(const Command& command) {
  const auto rows = rig_.Store().Execute(command.Rest(2));
  ExpectEqual(command.Argument(1), rows->Eof() ? "NONE" : rows->Field(0).ToPlainText());
}

void Player::ExpectCell(const Command& command) {
  const int row = Int32OrZero(command.Argument(2));
  const int column = Int32OrZero(command.Argument(3));
  const auto& list = FindAs<ui::List>(command.Argument(1));
  const int at = list.RowAt(row);
  const bool there = at >= 0 && column >= 0 && static_cast<std::size_t>(column) < list.layout.size();
  const std::string found = there ? list.Cell(at, column) : "(no hay tal celda)";
  ExpectEqual(command.Argument(4), found);
}

void Player::ExpectPrinted(const std::string& text) {
  const std::string wanted = TrimRight(text);
  for (const PrintedDocument& document : rig_.printers.documents) {
    for (const std::string& line : document.lines) {
      if (TrimRight(line) == wanted) return;
    }
  }
  throw Failure("expected the printed line \"" + text + "\", found no such line", false);
}

void Player::ExpectMail(const std::string& text) {
  for (const tpv::Mail& mail : rig_.mail.mails) {
    const bool holds = mail.subject.find(text) != std::string::npos ||
                       mail.body.find(text) != std::string::npos;
    if (holds) return;
  }
  throw Failure("expected a mail with \"" + text + "\", found none", false);
}

}  // namespace tpv::scenario
