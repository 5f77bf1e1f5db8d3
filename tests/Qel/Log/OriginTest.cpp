#include <Qel/Log/Origin.h>

#include <gtest/gtest.h>

#include <ctime>
#include <type_traits>
#include <utility>

namespace {

constexpr const char* File = "Qel/Tnf/Index";
constexpr const char* Function = "QelTnf::Index::FlushFrozen";

/// An origin in the past, unlike the present one.
Qel::Log::Origin longAgo() {
    Qel::Log::Origin origin(File, Function, 42);
    origin.time = 1234567890;
    return origin;
}

void expectLongAgo(const Qel::Log::Origin& origin) {
    EXPECT_EQ(origin.file, File);
    EXPECT_EQ(origin.function, Function);
    EXPECT_EQ(origin.line, 42U);
    EXPECT_EQ(origin.time, 1234567890);
}

TEST(Origin, TakesTheCurrentTime) {
    const std::time_t before = std::time(nullptr);
    const Qel::Log::Origin origin(File, Function, 42);
    const std::time_t after = std::time(nullptr);
    EXPECT_GE(origin.time, before);
    EXPECT_LE(origin.time, after);
}

TEST(Origin, KeepsThePointersThatItWasGiven) {
    const Qel::Log::Origin origin(File, Function, 42);
    EXPECT_EQ(origin.file, File);
    EXPECT_EQ(origin.function, Function);
    EXPECT_EQ(origin.line, 42U);
}

TEST(Origin, AssignmentCopiesAllFourFieldsSoThatTheTimeStaysThatOfTheSource) {
    const Qel::Log::Origin source = longAgo();
    Qel::Log::Origin origin("other", "other", 1);
    origin = source;
    expectLongAgo(origin);
}

TEST(Origin, MoveAssignmentCopiesAllFourFields) {
    Qel::Log::Origin origin("other", "other", 1);
    origin = longAgo();
    expectLongAgo(origin);
}

TEST(Origin, CountsSecondsIn64SignedBits) {
    EXPECT_TRUE((std::is_same_v<decltype(Qel::Log::Origin::time), std::int64_t>));
}

} // namespace
