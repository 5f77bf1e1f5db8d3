#include "MoxReader/MemorySource.h"

#include "Support/ExpectError.h"

#include <array>

using MoxReader::ErrorCode;
using MoxReader::MemorySource;

TEST(MemorySource, ReadsTheBytesAtAnOffset) {
    MemorySource source({1, 2, 3, 4});
    std::array<std::uint8_t, 2> bytes{};
    source.read(1, bytes);
    EXPECT_EQ(4u, source.size());
    EXPECT_EQ((std::array<std::uint8_t, 2>{2, 3}), bytes);
}

TEST(MemorySource, ReadingPastTheEndIsTruncated) {
    MemorySource source({1, 2, 3, 4});
    std::array<std::uint8_t, 2> bytes{};
    expectError(ErrorCode::Truncated, [&] { source.read(3, bytes); });
    expectError(ErrorCode::Truncated, [&] { source.read(0xFFFFFFFFFFFFFFFFu, bytes); });
}

TEST(MemorySource, ReadingNothingAtTheEndSucceeds) {
    MemorySource source({1, 2});
    EXPECT_NO_THROW(source.read(2, {}));
}
