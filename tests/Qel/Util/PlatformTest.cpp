#include "Qel/Support/FakeNames.h"
#include "Qel/Support/HostNames.h"
#include "Qel/Support/Pipe.h"
#include "Support/Bytes.h"
#include "Support/EnvironmentGuard.h"
#include "Support/TemporaryFolder.h"
#include "Support/TimeZoneGuard.h"

#include <Qel/Util/Platform.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>

namespace {

namespace Platform = QelUtil::Platform;

class PlatformFile : public testing::Test {
protected:
    ~PlatformFile() override { std::fclose(stream); }

    Support::TemporaryFolder folder;
    const std::string path = folder.path("file");
    std::FILE* stream = std::fopen(path.c_str(), "wb");
};

TEST_F(PlatformFile, ExistsIfAFileBearsThePath) {
    EXPECT_TRUE(Platform::pathExists(path));
    EXPECT_FALSE(Platform::pathExists(path + "s"));
}

TEST_F(PlatformFile, ExistsIfAFolderBearsThePath) {
    EXPECT_TRUE(Platform::pathExists(folder.path("")));
}

TEST_F(PlatformFile, ExistsThoughItCanNotBeRead) {
    std::filesystem::permissions(path, std::filesystem::perms::none);
    EXPECT_TRUE(Platform::pathExists(path));
}

TEST_F(PlatformFile, SeeksFromTheStart) {
    std::fputs("abcd", stream);
    ASSERT_TRUE(Platform::seekTo(stream, 1));
    std::fputs("X", stream);
    std::fflush(stream);
    EXPECT_EQ(Support::bytesOf(path), (Support::ByteVector{'a', 'X', 'c', 'd'}));
}

TEST_F(PlatformFile, SeeksBeyondTheEndAndLeavesAHoleOfZeros) {
    ASSERT_TRUE(Platform::seekTo(stream, 3));
    std::fputs("X", stream);
    std::fflush(stream);
    EXPECT_EQ(Support::bytesOf(path), (Support::ByteVector{0, 0, 0, 'X'}));
}

TEST_F(PlatformFile, SeeksBeyond4GiB) {
    ASSERT_TRUE(Platform::seekTo(stream, 0x140000000));
    std::fputs("X", stream);
    std::fflush(stream);
    EXPECT_EQ(std::filesystem::file_size(path), 0x140000001U);
}

TEST(Platform, CanNotSeekANullStream) {
    EXPECT_FALSE(Platform::seekTo(nullptr, 0));
}

TEST(Platform, CanNotSeekAPipe) {
    if (!Support::Pipe::isAvailable()) {
        GTEST_SKIP() << "needs a pipe that refuses to be positioned";
    }
    const Support::Pipe pipe;
    EXPECT_FALSE(Platform::seekTo(pipe.stream(), 0));
}

// 2009-02-13 23:31:30 UTC.
TEST(Platform, LocalTimeIsThatOfTheZoneOfTheProcess) {
    constexpr std::time_t time = 1234567890;
    {
        const Support::TimeZoneGuard zone("FAR-13:45");
        const std::tm calendar = Platform::localTime(time);
        EXPECT_EQ(calendar.tm_mday, 14);
        EXPECT_EQ(calendar.tm_hour, 13);
        EXPECT_EQ(calendar.tm_min, 16);
        EXPECT_EQ(calendar.tm_sec, 30);
    }
    const Support::TimeZoneGuard zone("WEST11");
    const std::tm calendar = Platform::localTime(time);
    EXPECT_EQ(calendar.tm_mday, 13);
    EXPECT_EQ(calendar.tm_hour, 12);
    EXPECT_EQ(calendar.tm_min, 31);
}

TEST(Platform, LocalTimeIsTheCalendarTimeThatMeansTheSameSecond) {
    constexpr std::time_t time = 1234567890;
    std::tm calendar = Platform::localTime(time);
    EXPECT_EQ(calendar.tm_year, 109);
    EXPECT_EQ(calendar.tm_mon, 1);
    EXPECT_EQ(calendar.tm_sec, 30);
    EXPECT_EQ(std::mktime(&calendar), time);
}

TEST(Platform, LocalTimeFollowsAZoneThatIsSetWithinTheProcess) {
    Support::EnvironmentGuard zone("TZ", "UTC0");
    EXPECT_EQ(Platform::localTime(0).tm_hour, 0);
    zone.set("XXX-5");
    EXPECT_EQ(Platform::localTime(0).tm_hour, 5);
    zone.set("YYY-7");
    EXPECT_EQ(Platform::localTime(0).tm_hour, 7);
}

// --- Names

TEST(Platform, ComputerNameIsThatOfTheHost) {
    const std::optional<std::string> name = Support::hostName();
    if (!name) {
        GTEST_SKIP() << "needs a system that gives its name in another way";
    }
    EXPECT_NE(*name, "");
    EXPECT_EQ(Platform::computerName(), name->substr(0, 79));
}

TEST(Platform, UserNameIsThatOfTheProcess) {
    const std::optional<std::string> name = Support::nameOfUser();
    if (!name) {
        GTEST_SKIP() << "needs a system that gives its user in another way";
    }
    EXPECT_EQ(Platform::userName(), name->substr(0, 79));
}

TEST(Platform, NamesAreCutTo79Bytes) {
    if (!Support::FakeNames::isAvailable()) {
        GTEST_SKIP() << "needs a system whose answers can be replaced";
    }
    for (const std::size_t length : {0U, 1U, 78U, 79U, 80U, 81U, 1000U}) {
        const Support::FakeNames names(std::string(length, 'n'));
        const std::string expected(std::min<std::size_t>(length, 79), 'n');
        EXPECT_EQ(Platform::computerName(), expected) << length;
        EXPECT_EQ(Platform::userName(), expected) << length;
    }
}

TEST(Platform, NamesThatTheSystemDoesNotKnowAreEmpty) {
    if (!Support::FakeNames::isAvailable()) {
        GTEST_SKIP() << "needs a system whose answers can be replaced";
    }
    const Support::FakeNames none(std::nullopt);
    EXPECT_EQ(Platform::computerName(), "");
    EXPECT_EQ(Platform::userName(), "");
}

TEST(Platform, CallColumnIsThatOfTheCall) {
    // clang-format off
    const auto first = Platform::callColumn(); const auto second = Platform::callColumn();
    // clang-format on
    EXPECT_GT(first, 0U);
    EXPECT_GT(second, first);
}

} // namespace
