#include "common/WorkLimit.h"
#include "common/Failure.h"

#include <gtest/gtest.h>

#include <limits>

using MoxTool::WorkLimit;

namespace {

constexpr std::uint64_t KiB = 1024;
constexpr std::uint64_t MiB = 1024 * KiB;
constexpr std::uint64_t Most = std::numeric_limits<std::uint64_t>::max();

} // namespace

TEST(WorkLimit, SmallFileMayBecome256MiB) {
    WorkLimit limit("a.mox", 12 * KiB, false);
    limit.add(100 * MiB);
    limit.add(39 * MiB, 4);
    EXPECT_EQ(limit.total(), 256 * MiB);
    EXPECT_TRUE(limit.allows(0, Most));
    EXPECT_FALSE(limit.allows(1));
}

TEST(WorkLimit, LargeFileMayBecomeAHundredTimesItsSize) {
    const WorkLimit limit("a.mox", 3 * MiB, false);
    EXPECT_TRUE(limit.allows(3 * MiB, 100));
    EXPECT_FALSE(limit.allows(3 * MiB, 101));
    EXPECT_TRUE(WorkLimit("a.mox", Most, false).allows(Most));
}

TEST(WorkLimit, CountsThatOverflowAreRefused) {
    EXPECT_FALSE(WorkLimit("a.mox", 1, false).allows(std::uint64_t{1} << 33U, std::uint64_t{1} << 31U));
}

TEST(WorkLimit, RefusalNamesTheFileAndTheOption) {
    WorkLimit limit("a.mox", 12 * KiB, false);
    try {
        limit.add(257 * MiB);
        FAIL() << "no failure";
    } catch (const MoxTool::Failure& failure) {
        EXPECT_STREQ(failure.what(), "a.mox: its 12.0 KiB would become more than 256.0 MiB of numbers, since "
                                     "parts or steps share them; --no-limit goes on all the same");
    }
}

TEST(WorkLimit, AllowsEverythingIfAskedToGoOn) {
    WorkLimit limit("a.mox", 1, true);
    EXPECT_NO_THROW(limit.add(Most, Most));
}

TEST(WorkLimit, WhatIsAlwaysFineCanBeSet) {
    const WorkLimit limit("a.mox", KiB, false, 5 * MiB);
    EXPECT_TRUE(limit.allows(5 * MiB));
    EXPECT_FALSE(limit.allows(5 * MiB + 1));
    EXPECT_TRUE(WorkLimit("a.mox", MiB, false, 5 * MiB).allows(100 * MiB));
}
