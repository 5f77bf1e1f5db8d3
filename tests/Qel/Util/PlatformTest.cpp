#include "Qel/Support/Pipe.h"
#include "Support/Bytes.h"
#include "Support/EnvironmentGuard.h"
#include "Support/TemporaryFolder.h"

#include <Qel/Util/Platform.h>

#include <gtest/gtest.h>

#include <cstdio>
#include <ctime>
#include <filesystem>
#include <fstream>

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

TEST(Platform, NamesHaveAtMost79BytesAndNoZeroByte) {
    for (const std::string& name : {Platform::computerName(), Platform::userName()}) {
        EXPECT_LE(name.size(), 79U);
        EXPECT_EQ(name.find('\0'), std::string::npos);
    }
}

TEST(Platform, CallColumnIsThatOfTheCall) {
    // clang-format off
    const auto first = Platform::callColumn(); const auto second = Platform::callColumn();
    // clang-format on
    EXPECT_GT(first, 0U);
    EXPECT_GT(second, first);
}

} // namespace
