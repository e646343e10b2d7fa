#include "data/IsoDate.h"

#include <gtest/gtest.h>
#include <random>

using namespace amberquill;
using namespace Qt::StringLiterals;
using namespace std::chrono;

namespace {

constexpr sys_seconds novemberNight = sys_days(2026y / 11 / 15) + 3h + 24min + 7s;

} // namespace

TEST(IsoDate, IsWrittenInUtcWithoutAFraction) {
    EXPECT_EQ(isoText(novemberNight), u"2026-11-15T03:24:07Z"_s);
    EXPECT_EQ(isoText(sys_seconds(0s)), u"1970-01-01T00:00:00Z"_s);
    EXPECT_EQ(isoText(sys_seconds(-1s)), u"1969-12-31T23:59:59Z"_s);
    EXPECT_EQ(isoText(sys_days(1y / 1 / 1)), u"0001-01-01T00:00:00Z"_s);
}

TEST(IsoDate, IsReadInUtcOrWithADistanceFromUtc) {
    EXPECT_EQ(dateFromIsoText(u"2026-11-15T03:24:07Z"_s), novemberNight);
    EXPECT_EQ(dateFromIsoText(u"2026-11-15T04:54:07+01:30"_s), novemberNight);
    EXPECT_EQ(dateFromIsoText(u"2026-11-14T23:24:07-04:00"_s), novemberNight);
    EXPECT_EQ(dateFromIsoText(u"2024-02-29T00:00:00Z"_s), sys_days(2024y / 2 / 29));
}

TEST(IsoDate, ADayThatIsNotInTheCalendarIsRefused) {
    for (const QString& text :
         {u"2026-02-30T00:00:00Z"_s, u"2025-02-29T00:00:00Z"_s, u"2026-13-01T00:00:00Z"_s,
          u"2026-00-01T00:00:00Z"_s, u"2026-01-00T00:00:00Z"_s, u"0000-01-01T00:00:00Z"_s}) {
        EXPECT_EQ(dateFromIsoText(text), std::nullopt) << text.toStdString();
    }
}

TEST(IsoDate, AFractionOfASecondIsRefused) {
    EXPECT_EQ(dateFromIsoText(u"2026-11-15T03:24:07.5Z"_s), std::nullopt);
    EXPECT_EQ(dateFromIsoText(u"2026-11-15T03:24:07,5Z"_s), std::nullopt);
}

TEST(IsoDate, AMissingZoneIsRefused) {
    EXPECT_EQ(dateFromIsoText(u"2026-11-15T03:24:07"_s), std::nullopt);
}

TEST(IsoDate, AnyOtherFormIsRefused) {
    for (const QString& text :
         {u""_s, u"2026-11-15"_s, u"2026-11-15T03:24Z"_s, u"2026-11-15 03:24:07Z"_s,
          u"2026-11-15T24:00:00Z"_s, u"2026-11-15T03:60:00Z"_s, u"2026-11-15T03:24:60Z"_s,
          u"20261115T032407Z"_s, u"2026-11-15T03:24:07Zx"_s, u" 2026-11-15T03:24:07Z"_s,
          u"2026-11-15T03:24:07+25:00"_s, u"2026-11-15T03:24:07+0100"_s, u"+2026-11-15T03:24:07Z"_s,
          u"-026-11-15T03:24:07Z"_s, u"２026-11-15T03:24:07Z"_s, u"2026-11-15T03:24:07z"_s}) {
        EXPECT_EQ(dateFromIsoText(text), std::nullopt) << text.toStdString();
    }
}

TEST(IsoDate, ATimeAtTheDistanceZeroIsInUtc) {
    EXPECT_EQ(dateFromIsoText(u"2026-11-15T03:24:07+00:00"_s), novemberNight);
    EXPECT_EQ(dateFromIsoText(u"2026-11-15T03:24:07-00:00"_s), novemberNight);
}

// Such a date could not be read back.
TEST(IsoDate, AYearBeyondFourDigitsInUtcIsRefused) {
    EXPECT_EQ(dateFromIsoText(u"0001-01-01T00:00:00+01:00"_s), std::nullopt);
    EXPECT_EQ(dateFromIsoText(u"9999-12-31T23:59:59-01:00"_s), std::nullopt);
    EXPECT_EQ(dateFromIsoText(u"9999-12-31T23:59:59Z"_s), sys_days(9999y / 12 / 31) + 23h + 59min + 59s);
}

TEST(IsoDate, EveryDateIsReadBackAsItWasWritten) {
    std::mt19937_64 random(5);
    const auto first = sys_seconds(sys_days(1y / 1 / 1)).time_since_epoch().count();
    const auto last = sys_seconds(sys_days(9999y / 12 / 31)).time_since_epoch().count();
    std::uniform_int_distribution<std::int64_t> anySecond(first, last);
    for (int round = 0; round < 2000; ++round) {
        const sys_seconds date(seconds(anySecond(random)));
        EXPECT_EQ(dateFromIsoText(isoText(date)), date) << isoText(date).toStdString();
    }
}
