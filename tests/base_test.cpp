// The readings and the roundings that every amount of the shop goes through.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "base/date_time.h"
#include "base/mask.h"
#include "base/number_text.h"
#include "base/rounding.h"
#include "base/text.h"
#include "base/variant.h"

namespace tpv {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
const DateTime kMoment{2026, 11, 4, 9, 5, 7, 30};

TEST(Rounding, HalvesGoAwayFromZeroOnTheDecimalDigits) {
  const struct {
    double value;
    int decimals;
    double expected;
  } cases[] = {{2.675, 2, 2.68},
               {1.005, 2, 1.01}, {0.605, 2, 0.61}, {-2.675, 2, -2.68}, {1.0049999, 2, 1.0},
               {0.5, 0, 1}, {-0.5, 0, -1}, {0.4999, 0, 0}, {0.05, 1, 0.1}, {9.995, 2, 10},
               {99999999.995, 2, 1e8}, {0.001, 2, 0}, {0.0000001, 2, 0}, {1.15, 1, 1.2},
               {12.35, 2, 12.35}, {1234.5, 0, 1235}, {1e300, 2, 1e300}, {8.345, 2, 8.35},
               {3 * 1.005, 2, 3.02},  // 3.0149999999999997
               {0.285, 2, 0.29}, {1.00005, 4, 1.0001}, {kInfinity, 2, kInfinity}, {-0.004, 2, 0},
               {123456.125, 2, 123456.13}};
  for (const auto& c : cases) EXPECT_EQ(RoundHalfAway(c.value, c.decimals), c.expected) << c.value;
  EXPECT_EQ(RoundAsEngine(3 * 1.005, 2), 3.01);
  EXPECT_TRUE(std::isnan(RoundHalfAway(std::nan(""), 2)));
}

TEST(Rounding, EveryHalfCentRoundsUpAndEveryCentStays) {
  for (int cents = 0; cents < 200000; ++cents) {
    const double exact = std::stod(std::to_string(cents) + "e-2");
    const double half = std::stod(std::to_string(cents) + "5e-3");
    ASSERT_EQ(RoundHalfAway(exact, 2), exact);
    ASSERT_EQ(RoundHalfAway(half, 2), std::stod(std::to_string(cents + 1) + "e-2")) << half;
  }
  EXPECT_TRUE(SameCents(4.06 + 8.04, 12.10));
  EXPECT_TRUE(SameCents(0.1 + 0.2, 0.3));
  EXPECT_FALSE(SameCents(12.10, 12.11));
}

TEST(NumberText, ReadsWhatASpanishOperatorTypes) {
  const std::pair<const char*, double> numbers[] = {{"1.234,50", 1234.5},
                                                    {"1.234", 1234}, {"12.5", 12.5}, {"0.00", 0},
                                                    {"10,05", 10.05}, {"+3", 3}, {"-3", -3},
                                                    {" 5 ", 5}, {"0.250", 0.25},
                                                    {"1.234.567", 1234567}, {",5", 0.5},
                                                    {"5,", 5}, {"1234.567", 1234.567},
                                                    {"-1.234,50", -1234.5},
                                                    {"999999999999999", 999999999999999}};
  for (const auto& [text, number] : numbers) EXPECT_EQ(ParseNumber(text), number) << text;
  const std::string others[] = {"1,2,3",
                                "1e5", "0x10", "nan", "inf", "--1", "12..5", "", "-", ",", ".",
                                "1 2", "1.23,4", "1.234.56", "1,234.5", "- 1", "1000000000000000",
                                std::string(500, '9'),
                                std::string("1\0", 2),
                                "١", "+-1", "1.abc",
                                "1234.567,8"};
  for (const auto& text : others) EXPECT_FALSE(ParseNumber(text)) << text;
}

TEST(NumberText, WholeNumbersStayInTheirRange) {
  EXPECT_EQ(ParseInt32("2147483647"), 2147483647);
  EXPECT_EQ(ParseInt32("-2147483648"), std::numeric_limits<std::int32_t>::min());
  for (const char* text : {"2147483648", "-2147483649", "1,5", "x"}) {
    EXPECT_FALSE(ParseInt32(text)) << text;
  }
  EXPECT_EQ(LeadingNumber("03 - Tarjeta"), 3);
  for (const char* text : {"", "Tarjeta 3", "-3", "99999999999"}) {
    EXPECT_EQ(LeadingNumber(text), 0) << text;
  }
}

TEST(NumberText, ShowsFifteenDigitsAtMost) {
  const struct {
    double value;
    const char* expected;
  } cases[] = {{12.35 - 10, "2.35"},
               {0.1 + 0.2, "0.3"}, {-0.0, "0"}, {100, "100"}, {0.00001234, "0.00001234"},
               {-1e-20, "0"}, {-1.5, "-1.5"}, {123456789.01, "123456789.01"},
               {99999999999999, "99999999999999"}, {999999999999999.9, "1000000000000000"},
               {0.0001, "0.0001"}};
  for (const auto& c : cases) EXPECT_EQ(ToPlain(c.value), c.expected);
  EXPECT_EQ(ToSpanish(-1234.5), "-1234,5");
}

TEST(Mask, Numbers) {
  const struct {
    double value;
    const char* mask;
    const char* expected;
  } cases[] = {{1234567.891, "#,##0.00", "1.234.567,89"},
               {0, "#,##0.00", "0,00"}, {-1234.5, "#,##0.00", "-1.234,50"},
               {-0.001, "0.00", "0,00"}, {-0.004, "#,##0.00", "0,00"}, {2.675, "0.00", "2,68"},
               {999.995, "#,##0.00", "1.000,00"}, {12.3, "#,###,##0.00€", "12,30€"},
               {0, "##", ""}, {10, "##", "10"}, {7, "00", "07"}, {123, "00", "123"},
               {1234.5, "###,##0.000", "1.234,500"}, {1234.5, "#,##0.", "1.235"},
               {1234.5, "#0.00", "1234,50"}, {0.5, "0.##", "0,5"}, {3, "0.##", "3"},
               {0.5, "#.00", ",50"}, {0.5, ".00", ",50"}, {5, "0.00 ptas.", "5,00 ptas."},
               {5, "Nº 000", "Nº 005"}, {5, "#,000,000", "000.005"}, {-12.5, "€ 0.00", "-€ 12,50"},
               {9999999.99, "#,##0.00", "9.999.999,99"}, {9999999.996, "#,##0.00", "10.000.000,00"},
               {-1e14, "#,##0.00", "-100.000.000.000.000,00"},
               {12, "000000000000000000000000", "000000000000000000000012"}};
  for (const auto& c : cases) EXPECT_EQ(FormatNumber(c.value, c.mask), c.expected) << c.mask;
  EXPECT_EQ(FormatNumber(1e308, "0." + std::string(900, '0')).size(), 309U + 1 + 15);
  EXPECT_EQ(FormatNumber(1, MaskWithDecimals("#,##0.", 3)), "1,000");
  EXPECT_EQ(MaskWithDecimals("#,##0.", -1), "#,##0.");
}

TEST(Mask, DatesAndTexts) {
  const struct {
    const char* mask;
    const char* expected;
  } cases[] = {{"DD/MM/YYYY HH:MM", "04/11/2026 09:05"},
               {"DD-MM-YY HH:nn", "04-11-26 09:05"}, {"dd/mm/yyyy", "04/11/2026"},
               {"d/m/yy", "4/11/26"}, {"hh:mm:ss", "09:05:07"},
               {"yyyymmdd", "20261104"}};
  for (const auto& c : cases) EXPECT_EQ(Format(kMoment, c.mask), c.expected) << c.mask;
  EXPECT_EQ(Format("Peña", "@@@@@@"), "  Peña");
  EXPECT_EQ(Format("Peña", "@@@@@@!"), "Peña  ");
  EXPECT_EQ(Format("demasiado", "@@@"), "demasiado");
  EXPECT_EQ(Format(Variant(), "0.00"), "");
  EXPECT_EQ(Format("abc", "0.00"), "abc");
  EXPECT_EQ(Format(12.5, ""), "12,5");
}

TEST(Dates, ReadsDayFirstAndIsoAndNothingElse) {
  const struct {
    const char* text;
    const char* expected;
  } cases[] = {{"24/11/2026", "2026-11-24 00:00:00.000"},
               {" 24-11-26 ", "2026-11-24 00:00:00.000"},
               {"24/11/2026 23:59:00.25", "2026-11-24 23:59:00.250"},
               {"1/2/50", "1950-02-01 00:00:00.000"},
               {"29/02/2024", "2024-02-29 00:00:00.000"}};
  for (const auto& c : cases) EXPECT_EQ(ToIso(ParseDayFirst(c.text).value()), c.expected);
  for (const char* text : {"29/02/2023", "31/04/2026", "24/11/226", "24/11/2026 24:00", "24/11",
                           "24/11/2026x", "11/24/2026", "01/01/1752", ""}) {
    EXPECT_FALSE(ParseDayFirst(text)) << text;
  }
  EXPECT_EQ(ParseIso(ToIso(kMoment)), kMoment);
  for (const char* text : {"2026-11-31", "2026-1-01", "24/11/2026", "2026-11-24 10"}) {
    EXPECT_FALSE(ParseIso(text)) << text;
  }
}

TEST(Dates, CompletesWhatWasTyped) {
  const DateTime day{2026, 11, 24};
  for (const char* text : {"24112026", "241126", "2411", "24/11", "24-11", "24", "24/11/26"}) {
    EXPECT_EQ(ParseTypedDate(text, kMoment), day) << text;
  }
  EXPECT_EQ(ParseTypedDate("5", kMoment), (DateTime{2026, 11, 5}));
  EXPECT_EQ(ParseTypedDate("1/12", kMoment), (DateTime{2026, 12, 1}));
  EXPECT_EQ(ParseTypedDate(" Hoy", kMoment), (DateTime{2026, 11, 4}));
  EXPECT_EQ(ParseTypedDate("ayer", {2026, 1, 1, 9}), (DateTime{2025, 12, 31}));
  EXPECT_EQ(ParseTypedDate("+30", kMoment), (DateTime{2026, 12, 4}));
  for (const char* text : {"", "241", "24112", "2411202", "241120261", "31/11", "0", "24/", "x", "hoy+1", "+",
                           "++3", "+99999", "+3/12"}) {
    EXPECT_FALSE(ParseTypedDate(text, kMoment)) << text;
  }
}

TEST(Dates, PrintsAndMovesThroughTheCalendar) {
  EXPECT_EQ(ToIso(kMoment), "2026-11-04 09:05:07.030");
  EXPECT_EQ(ToDayFirstSeconds(kMoment), "04/11/2026 09:05:07");
  EXPECT_EQ(ToIsoSeconds(AddSeconds({2024, 3, 1}, -1)), "2024-02-29 23:59:59");
  EXPECT_EQ(ToIsoSeconds(AddSeconds({2026, 12, 31, 23, 59, 59}, 1)), "2027-01-01 00:00:00");
  EXPECT_EQ(AddDays({2026, 1, 1}, -366), (DateTime{2024, 12, 31}));
  for (const std::int64_t far :
       {std::numeric_limits<std::int64_t>::max(), std::int64_t{23936000}}) {
    EXPECT_FALSE(IsValid(AddDays(kMoment, far)));
    EXPECT_FALSE(IsValid(AddSeconds(kMoment, -far * (far < 1000000000 ? 86400 : 1))));
  }
}

TEST(Text, CountsCharactersAndSurvivesBrokenBytes) {
  EXPECT_EQ(Length("Peña€😀"), 6U);
  EXPECT_EQ(Left("Peña", 3) + "|" + From("Peña", 3) + "|" + From("Peña", 9), "Peñ|ña|");
  EXPECT_EQ(PadLeft("ñ", 3) + "|" + PadRight("ñ", 3) + "|" + Centre("ñ", 4), "  ñ|ñ  | ñ  ");
  EXPECT_EQ(Trim("  a b ") + "|" + Trim("   ") + "|" + TrimRight(" a "), "a b|| a");
  for (const char* broken : {"\xC3", "\xE2\x82", "\xC0\xAF", "\xED\xA0\x80", "\xF4\x90\x80\x80",
                             "\xFF", "\x80", "\xE0\x80\x80"}) {
    const std::string valid = ValidUtf8(broken);
    EXPECT_EQ(valid.substr(0, 3), "\uFFFD");
    EXPECT_EQ(valid.size(), 3 * std::string(broken).size());
  }
  std::string text;
  for (const char32_t c : {U'a', U'ñ', U'€', U'😀', char32_t{0xD800}, char32_t{0x110000}}) {
    AppendCharacter(text, c);
  }
  EXPECT_EQ(text, "añ€😀\uFFFD\uFFFD");
}

TEST(Text, CutsAndComparesAsTheShopSearches) {
  EXPECT_EQ(Split("a,,b,", ","), (std::vector<std::string>{"a", "", "b", ""}));
  EXPECT_EQ(Split("ab", ""), std::vector<std::string>{"ab"});
  EXPECT_EQ(ReplaceAll("O'Neil's", "'", "''"), "O''Neil''s");
  EXPECT_EQ(ReplaceAll("ab", "", "x"), "ab");
  EXPECT_TRUE(EqualNoCase("Cav_Id", "CAV_ID") && StartsWithNoCase("Lav_Des", "LAV_"));
  EXPECT_FALSE(EqualNoCase("Cav", "Cav_Id") || StartsWithNoCase("La", "LAV_"));
  EXPECT_EQ(FoldCase("PEÑA ÀÇ×ŁŸŽĹ"), "peña àç×łÿžĺ");
  EXPECT_EQ(FoldForSearch("PEÑA Çedilla ÜBER Łódź Őšž÷"), "pena cedilla uber lodz osz÷");
  EXPECT_EQ(FoldForSearch("Pen\u0303a"), "pena");
}

TEST(Variant, ConvertsStrictly) {
  EXPECT_EQ(Variant("1.234,50").ToDouble(), 1234.5);
  EXPECT_EQ(Variant("12.50").ToMoney(), (Money{125000}));
  EXPECT_EQ(Variant(1.00005).ToMoney(), (Money{10001}));
  EXPECT_EQ(Variant(true).ToInt32(), 1);
  EXPECT_EQ(Variant(5.0).ToInt16(), 5);
  EXPECT_TRUE(Variant("True").ToBool());
  EXPECT_EQ(Variant("24/11/2026").ToDate(), (DateTime{2026, 11, 24}));
  EXPECT_THROW(Variant(40000).ToInt16(), ConversionError);
  EXPECT_THROW(Variant(1.5).ToInt32(), ConversionError);
  EXPECT_THROW(Variant(3e9).ToInt32(), ConversionError);
  EXPECT_THROW(Variant(std::nan("")).ToInt64(), ConversionError);
  EXPECT_THROW(Variant(1e18).ToMoney(), ConversionError);
  EXPECT_THROW(Variant().ToDouble(), ConversionError);
  EXPECT_THROW(Variant(kMoment).ToDouble(), ConversionError);
  EXPECT_THROW(Variant(5).ToDate(), ConversionError);
  EXPECT_THROW(Variant("x").ToObject(), ConversionError);
  try {
    Variant("abc").ToInt32();
    FAIL();
  } catch (const ConversionError& error) {
    EXPECT_STREQ(error.WithMember("IdCliente").what(), "IdCliente: «abc» no es un número");
  }
}

TEST(Variant, ShowsItselfToOperatorsAndTechnicians) {
  const struct {
    Variant value;
    const char* text;
    const char* plain;
  } cases[] = {{Variant(), "", "NULL"},
               {true, "True", "1"},
               {std::int64_t{-7}, "-7", "-7"},
               {12.50, "12,5", "12.5"},
               {Money{-123450}, "-12,345", "-12.345"},
               {"O'Neil", "O'Neil", "O'Neil"},
               {DateTime{2026, 11, 24}, "24/11/2026", "2026-11-24 00:00:00"},
               {kMoment, "04/11/2026 09:05:07", "2026-11-04 09:05:07"}};
  for (const auto& c : cases) {
    EXPECT_EQ(c.value.ToText(), c.text);
    EXPECT_EQ(c.value.ToPlainText(), c.plain);
  }
}

}  // namespace
}  // namespace tpv
