#include "platform/base/CMTime.h"

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <gtest/gtest.h>
#include <iterator>
#include <limits>

namespace lamina {

namespace {

constexpr std::int64_t kMost = std::numeric_limits<std::int64_t>::max();
constexpr std::int64_t kLeast = std::numeric_limits<std::int64_t>::min();

TEST(CMTime, ResultsAreExactOrSayThatTheyAreRounded)
{
    // Every field, where `==` would compare moments only. The least common multiple of the two primes is above the
    // finest timescale, of whose units the sum has 65543.0017; 2^63 units of 1/2 s are 2^62 whole seconds.
    const CMTime rounded = CMTime::make(1, 65521) + CMTime::make(1, 65537);
    const struct {
        CMTime got;
        std::int64_t value;
        std::int32_t timescale;
        bool isRounded;
    } cases[] = {
        {CMTime::make(1, 30) + CMTime::make(1, 25), 11, 150, false},
        {rounded, 65543, kCMTimeMaxTimescale, true},
        {rounded + kCMTimeZero, 65543, kCMTimeMaxTimescale, true},
        {CMTime::make(kMost, 2) + CMTime::make(1, 2), std::int64_t{1} << 62, 1, false},
        {CMTime::make(5, 10).converted(1), 1, 1, true},
        {CMTime::make(-4, 10).converted(1), 0, 1, true},
        {CMTime::make(4, 10).converted(600), 240, 600, false},
        {CMTime::makeWithSeconds(-2.5, 1), -3, 1, true},
        {CMTime::makeWithSeconds(1.0 / 3, 600), 200, 600, true}, // the double is a little less than a third
        {CMTime::makeWithSeconds(0x1p62, 1000), std::int64_t{1} << 62, 1, false},
    };
    for (const auto& [got, value, timescale, isRounded] : cases) {
        EXPECT_EQ(got.value, value);
        EXPECT_EQ(got.timescale, timescale) << value;
        EXPECT_EQ(got.hasBeenRounded(), isRounded) << value;
    }
}

TEST(CMTime, WhatNoTimescaleHoldsIsInfiniteOrInvalid)
{
    EXPECT_EQ(CMTime::make(kMost, 1) + CMTime::make(1, 1), kCMTimePositiveInfinity);
    EXPECT_EQ(CMTime::make(kLeast, 1) - CMTime::make(kMost, 1), kCMTimeNegativeInfinity);
    EXPECT_EQ(-CMTime::make(kLeast, 1), kCMTimePositiveInfinity);
    EXPECT_EQ(CMTime::makeWithSeconds(1e300, 600), kCMTimePositiveInfinity);
    EXPECT_EQ(CMTime::makeWithSeconds(-std::numeric_limits<double>::infinity(), 600), kCMTimeNegativeInfinity);
    EXPECT_FALSE(CMTime::makeWithSeconds(std::nan(""), 600).isValid());
    EXPECT_FALSE(CMTime::makeWithSeconds(1, 0).isValid());
    EXPECT_FALSE(CMTime::make(1, -600).isValid());
}

TEST(CMTime, OrderIsByMoment)
{
    // Neighbours that doubles could not tell apart, and times whose cross products exceed 64 bits.
    const CMTime ascending[] = {
        kCMTimeNegativeInfinity,
        CMTime::make(-1, 600),
        kCMTimeZero,
        CMTime::make(1, kCMTimeMaxTimescale),
        CMTime::make(kMost - 1, kCMTimeMaxTimescale),
        CMTime::make(kMost, kCMTimeMaxTimescale),
        CMTime::make(kMost, 1),
        CMTime::make(0, 1, 1), // a later epoch
        kCMTimePositiveInfinity,
        kCMTimeIndefinite,
        kCMTimeInvalid,
    };
    for (std::size_t i = 0; i < std::size(ascending); ++i) {
        for (std::size_t k = 0; k < std::size(ascending); ++k)
            EXPECT_TRUE((ascending[i] <=> ascending[k]) == (i <=> k)) << i << " and " << k;
    }
    EXPECT_EQ(CMTime::make(20, 600), CMTime::make(1, 30));
}

TEST(CMTime, SpecialTimesAndEpochsInSums)
{
    const CMTime one = CMTime::make(1, 1);
    const CMTime inRunTwo = CMTime::make(5, 1, 2);
    const struct {
        CMTime x, y, sum, difference;
    } cases[] = {
        {kCMTimePositiveInfinity, kCMTimePositiveInfinity, kCMTimePositiveInfinity, kCMTimeInvalid},
        {kCMTimePositiveInfinity, kCMTimeNegativeInfinity, kCMTimeInvalid, kCMTimePositiveInfinity},
        {kCMTimePositiveInfinity, kCMTimeIndefinite, kCMTimePositiveInfinity, kCMTimePositiveInfinity},
        {one, kCMTimePositiveInfinity, kCMTimePositiveInfinity, kCMTimeNegativeInfinity},
        {kCMTimeIndefinite, one, kCMTimeIndefinite, kCMTimeIndefinite},
        {inRunTwo, one, CMTime::make(6, 1, 2), CMTime::make(4, 1, 2)},
        {inRunTwo, CMTime::make(3, 1, 2), CMTime::make(8, 1, 2), CMTime::make(2, 1)}, // a duration has no epoch
        {inRunTwo, CMTime::make(1, 1, 3), kCMTimeInvalid, kCMTimeInvalid},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(c.x + c.y, c.sum) << &c - cases;
        EXPECT_EQ(c.y + c.x, c.sum) << &c - cases;
        EXPECT_EQ(c.x - c.y, c.difference) << &c - cases;
    }
    EXPECT_FALSE((one - inRunTwo).isValid());
}

} // namespace
} // namespace lamina
