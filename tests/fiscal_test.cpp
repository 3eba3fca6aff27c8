// Invoice records below the screens: fingerprints, moments, the chain.
#include <gtest/gtest.h>

#include "fiscal/fingerprint.h"
#include "fiscal/moment.h"
#include "host/machine.h"
#include "platform/digest.h"

namespace tpv::fiscal {
namespace {

// The agency's own examples, each chained to the one before.
TEST(Fingerprint, IsTheAgencys) {
  const auto digest = MakeDigest();
  if (digest == nullptr) GTEST_SKIP() << "built without libcrypto";
  Record record;
  record.kind = Kind::Invoice;
  record.issuer = "89890001K";
  record.tax = 1235;
  record.total = 12345;
  const struct {
    Kind kind;
    const char *number, *moment, *fingerprint;
  } examples[] = {
      {Kind::Invoice, "12345678/G33", "2024-01-01T19:20:30+01:00",
       "3C464DAF61ACB827C65FDA19F352A4E3BDC2C640E9E9FC4CC058073F38F12F60"},
      {Kind::Invoice, "12345679/G34", "2024-01-01T19:20:35+01:00",
       "F7B94CFD8924EDFF273501B01EE5153E4CE8F259766F88CF6ACB8935802A2B97"},
      {Kind::Cancellation, "12345679/G34", "2024-01-01T19:20:40+01:00",
       "177547C0D57AC74748561D054A9CEC14B4C4EA23D1BEFD6F2E69E3A388F90C68"},
  };
  for (const auto& example : examples) {
    record.kind = example.kind;
    record.document = {example.number, {2024, 1, 1}};
    record.moment = example.moment;
    Fingerprint(record, *digest);
    EXPECT_EQ(record.fingerprint, example.fingerprint) << record.text;
    record.previous = PreviousRecord{0, record.issuer, record.document, record.fingerprint};
  }
}

TEST(Moment, HasTheRightOffsetOnBothSidesOfAClockChange) {
  const struct {
    Zone zone;
    const char *utc, *moment;
  } examples[] = {
      {Zone::Madrid, "2026-03-29 00:59:59", "2026-03-29T01:59:59+01:00"},
      {Zone::Madrid, "2026-03-29 01:00:00", "2026-03-29T03:00:00+02:00"},
      {Zone::Madrid, "2026-10-25 00:59:59", "2026-10-25T02:59:59+02:00"},
      {Zone::Madrid, "2026-10-25 01:00:00", "2026-10-25T02:00:00+01:00"},
      {Zone::Madrid, "2026-12-31 23:30:00", "2027-01-01T00:30:00+01:00"},
      {Zone::Canaries, "2026-03-29 00:59:59", "2026-03-29T00:59:59+00:00"},
      {Zone::Canaries, "2026-03-29 01:00:00", "2026-03-29T02:00:00+01:00"},
      {Zone::Canaries, "2026-10-25 01:30:00", "2026-10-25T01:30:00+00:00"},
      {Zone::Canaries, "2026-10-25 02:30:00", "2026-10-25T02:30:00+00:00"},
  };
  for (const auto& example : examples) {
    const DateTime utc = ParseIso(example.utc).value();
    EXPECT_EQ(MomentText(example.zone, utc), example.moment);
    EXPECT_EQ(MomentUtc(example.moment), utc);
    const DateTime wall = ParseIso(std::string(example.moment).replace(10, 1, " ").substr(0, 19)).value();
    const std::string again = MomentText(example.zone, UtcOfWall(example.zone, wall));
    EXPECT_EQ(again.substr(0, 19), std::string(example.moment).substr(0, 19));  // of two hours, the first
  }
  for (const char* other : {"", "2026-11-24T10:30:00", "2026-11-24T10:30:00+03:00", "2026-11-24T10:30:00-01:00"}) {
    EXPECT_EQ(MomentUtc(other), std::nullopt) << other;
  }
}

}  // namespace
}  // namespace tpv::fiscal
