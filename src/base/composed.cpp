// Accents typed apart from their letter, as some systems and import files have them.
#include "base/text.h"

namespace tpv {

namespace {

struct Accent {
  char32_t mark;
  std::u32string_view pairs;  // the letter without, the letter with it
};

constexpr Accent kAccents[] = {
    {0x300, U"AÀEÈIÌOÒUÙaàeèiìoòuù"},
    {0x301, U"AÁCĆEÉIÍLĹNŃOÓRŔSŚUÚYÝZŹaácćeéiílĺnńoórŕsśuúyýzź"},
    {0x302, U"AÂCĈEÊGĜHĤIÎJĴOÔSŜUÛWŴYŶaâcĉeêgĝhĥiîjĵoôsŝuûwŵyŷ"},
    {0x303, U"AÃIĨNÑOÕUŨaãiĩnñoõuũ"},
    {0x304, U"AĀEĒIĪOŌUŪaāeēiīoōuū"},
    {0x306, U"AĂEĔGĞIĬOŎUŬaăeĕgğiĭoŏuŭ"},
    {0x307, U"CĊEĖGĠIİZŻcċeėgġzż"},
    {0x308, U"AÄEËIÏOÖUÜYŸaäeëiïoöuüyÿ"},
    {0x30A, U"AÅUŮaåuů"},
    {0x30B, U"OŐUŰoőuű"},
    {0x30C, U"CČDĎEĚLĽNŇRŘSŠTŤZŽcčdďeělľnňrřsštťzž"},
    {0x326, U"SȘTȚsștț"},
    {0x327, U"CÇGĢKĶLĻNŅRŖSŞTŢcçgģkķlļnņrŗsştţ"},
    {0x328, U"AĄEĘIĮUŲaąeęiįuų"},
};

// 0 when the two make no letter of their own.
char32_t Together(char32_t letter, char32_t mark) {
  for (const Accent& accent : kAccents) {
    if (accent.mark != mark) continue;
    for (std::size_t i = 0; i < accent.pairs.size(); i += 2) {
      if (accent.pairs[i] == letter) return accent.pairs[i + 1];
    }
  }
  return 0;
}

}  // namespace

std::string Composed(std::string_view utf8) {
  // The first bytes of all such accents.
  if (utf8.find_first_of("\xCC\xCD") == std::string_view::npos) return std::string(utf8);
  std::string result;
  result.reserve(utf8.size());
  char32_t held = 0;  // a letter that may still get an accent
  for (std::size_t at = 0; at < utf8.size();) {
    const char32_t next = NextCharacter(utf8, at);
    const char32_t one = Together(held, next);
    if (held != 0 && one == 0) AppendCharacter(result, held);
    held = one != 0 ? one : next;
  }
  if (held != 0) AppendCharacter(result, held);
  return result;
}

}  // namespace tpv
