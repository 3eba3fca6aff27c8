#include "adapters/files/code_table.h"

#include "base/number_text.h"
#include "base/text.h"

namespace tpv {

namespace {

// U+E000 stands where a table has nothing.
constexpr CodeTable kTables[] = {
    {"437", 0,
     U"ÇüéâäàåçêëèïîìÄÅÉæÆôöòûùÿÖÜ¢£¥₧ƒ"
     U"áíóúñÑªº¿⌐¬½¼¡«»░▒▓│┤╡╢╖╕╣║╗╝╜╛┐"
     U"└┴┬├─┼╞╟╚╔╩╦╠═╬╧╨╤╥╙╘╒╓╫╪┘┌█▄▌▐▀"
     U"αßΓπΣσµτΦΘΩδ∞φε∩≡±≥≤⌠⌡÷≈°∙·√ⁿ²■\u00A0"},
    {"850", 2,
     U"ÇüéâäàåçêëèïîìÄÅÉæÆôöòûùÿÖÜø£Ø×ƒ"
     U"áíóúñÑªº¿®¬½¼¡«»░▒▓│┤ÁÂÀ©╣║╗╝¢¥┐"
     U"└┴┬├─┼ãÃ╚╔╩╦╠═╬¤ðÐÊËÈıÍÎÏ┘┌█▄¦Ì▀"
     U"ÓßÔÒõÕµþÞÚÛÙýÝ¯´\u00AD±‗¾¶§÷¸°¨·¹³²■\u00A0"},
    {"858", 19,
     U"ÇüéâäàåçêëèïîìÄÅÉæÆôöòûùÿÖÜø£Ø×ƒ"
     U"áíóúñÑªº¿®¬½¼¡«»░▒▓│┤ÁÂÀ©╣║╗╝¢¥┐"
     U"└┴┬├─┼ãÃ╚╔╩╦╠═╬¤ðÐÊËÈ€ÍÎÏ┘┌█▄¦Ì▀"
     U"ÓßÔÒõÕµþÞÚÛÙýÝ¯´\u00AD±‗¾¶§÷¸°¨·¹³²■\u00A0"},
    {"1252", 16,
     U"€\uE000‚ƒ„…†‡ˆ‰Š‹Œ\uE000Ž\uE000\uE000‘’“”•–—˜™š›œ\uE000žŸ"
     U"\u00A0¡¢£¤¥¦§¨©ª«¬\u00AD®¯°±²³´µ¶·¸¹º»¼½¾¿"
     U"ÀÁÂÃÄÅÆÇÈÉÊËÌÍÎÏÐÑÒÓÔÕÖ×ØÙÚÛÜÝÞß"
     U"àáâãäåæçèéêëìíîïðñòóôõö÷øùúûüýþÿ"},
};
constexpr bool AllWhole() {
  for (const CodeTable& table : kTables) {
    if (table.characters.size() != 128) return false;
  }
  return true;
}
static_assert(AllWhole());

struct Model {
  std::string_view name;
  std::string_view table;
};

// Models older than the euro have no 858; the simplest know one table alone.
constexpr Model kModels[] = {
    {"tm-t20", "858"}, {"tm-t88", "858"},  {"tm-u220", "858"}, {"bixolon", "858"},
    {"star", "858"},   {"tm-u200", "850"}, {"tm-u300", "850"}, {"basic", "437"},
};

std::string_view TableOf(std::string_view model) {
  for (const Model& known : kModels) {
    if (EqualNoCase(known.name, model)) return known.table;
  }
  return model;
}

}  // namespace

CodeTable UsualCodeTable() { return kTables[2]; }

std::optional<CodeTable> ParseCodeTable(std::string_view setting) {
  const std::size_t colon = setting.find(':');
  const std::string_view name = TableOf(setting.substr(0, colon));
  for (CodeTable table : kTables) {
    if (table.name != name) continue;
    if (colon == std::string_view::npos) return table;
    const auto position = ParseInt32(setting.substr(colon + 1));
    if (!position || *position < 0 || *position > 255) return std::nullopt;
    table.position = static_cast<unsigned char>(*position);
    return table;
  }
  return std::nullopt;
}

}  // namespace tpv
