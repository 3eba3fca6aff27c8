// What tells a bar-code scanner from fingers, and a scale's codes from others.
#include <gtest/gtest.h>

#include "sale/weighed_code.h"
#include "screen/scan_burst.h"

namespace tpv {
namespace {

std::optional<std::string> Typed(ui::ScanBurst& burst, std::string_view keys, std::int64_t& now,
                                 std::int64_t pause) {
  for (const char key : keys) burst.Begins(static_cast<char32_t>(key), now += pause);
  return burst.LineEnd(now += pause);
}

TEST(ScanBurst, IsFasterThanFingersAndEndsOnce) {
  ui::ScanBurst burst;
  std::int64_t now = 5000;
  EXPECT_EQ(Typed(burst, "8436210000011", now, 80), std::nullopt);
  EXPECT_EQ(Typed(burst, "8436210000011", now, 10), "8436210000011");
  EXPECT_TRUE(burst.Trails(now + 5));   // the LF behind the CR
  EXPECT_FALSE(burst.Trails(now + 500));
  EXPECT_EQ(Typed(burst, "123", now, 10), std::nullopt);  // too short
  // What fingers typed before is no part of the code.
  burst.Begins(U'7', now += 300);
  now += 300;
  EXPECT_EQ(Typed(burst, "0121", now, 20), "0121");
  // A key in between, a pause before the line end, keys without a moment.
  for (const char key : std::string_view("0121")) burst.Begins(static_cast<char32_t>(key), now += 5);
  burst.Interrupt();
  EXPECT_EQ(burst.LineEnd(now += 5), std::nullopt);
  for (const char key : std::string_view("0121")) burst.Begins(static_cast<char32_t>(key), now += 5);
  EXPECT_EQ(burst.LineEnd(now += 200), std::nullopt);
  for (const char key : std::string_view("0121")) burst.Begins(static_cast<char32_t>(key), std::nullopt);
  EXPECT_EQ(burst.LineEnd(std::nullopt), std::nullopt);
}

TEST(WeighedCode, HasPriceOrWeightWhereTheShopSaysSo) {
  const std::string layouts = "20=IIIIIPPPPP 29=IIIIVWWWWW";
  const auto priced = ReadWeighedCode("2000123012506", layouts);
  ASSERT_TRUE(priced);
  EXPECT_EQ(priced->article, "00123");
  EXPECT_EQ(priced->price, 12.5);
  EXPECT_FALSE(priced->units);
  const auto weighed = ReadWeighedCode("2900123003521", layouts);
  ASSERT_TRUE(weighed);
  EXPECT_EQ(weighed->article, "0012");
  EXPECT_EQ(weighed->units, 0.352);
  for (const char* other : {"2000123012507", "2100123012505", "8436210000011", "200012301250", ""}) {
    EXPECT_FALSE(ReadWeighedCode(other, layouts)) << other;
  }
  EXPECT_FALSE(ReadWeighedCode("2000123012506", ""));
  EXPECT_TRUE(AreWeighedLayouts(layouts) && AreWeighedLayouts(""));
  for (const char* wrong : {"30=IIIIIPPPPP", "20=IIIIIPPPP", "20=IIIIIIIIII", "20=IIIIIPPPWW", "x"}) {
    EXPECT_FALSE(AreWeighedLayouts(wrong)) << wrong;
  }
}

}  // namespace
}  // namespace tpv
