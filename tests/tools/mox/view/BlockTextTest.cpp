#include "view/blockText.h"

#include <gtest/gtest.h>

#include <zlib.h>

#include <array>

namespace {

TEST(Base64, FillsUpWithEqualsSigns) {
    EXPECT_EQ(MoxTool::base64(""), "");
    EXPECT_EQ(MoxTool::base64("f"), "Zg==");
    EXPECT_EQ(MoxTool::base64("fo"), "Zm8=");
    EXPECT_EQ(MoxTool::base64("foo"), "Zm9v");
    EXPECT_EQ(MoxTool::base64("foobar"), "Zm9vYmFy");
}

TEST(Base64, TakesAllBytes) {
    EXPECT_EQ(MoxTool::base64(std::string("\xFF\xEF\x00\x01", 4)), "/+8AAQ==");
}

TEST(Deflated, IsAZlibStreamOfTheBytes) {
    const std::string bytes(1000, 'x');
    const auto packed = MoxTool::deflated(bytes);
    EXPECT_LT(packed.size(), 100U);
    std::array<char, 1000> back{};
    uLongf length = back.size();
    ASSERT_EQ(uncompress(reinterpret_cast<Bytef*>(back.data()), &length,
                         reinterpret_cast<const Bytef*>(packed.data()), static_cast<uLong>(packed.size())),
              Z_OK);
    EXPECT_EQ(std::string(back.data(), length), bytes);
}

TEST(Deflated, IsNothingForNoBytes) {
    EXPECT_EQ(MoxTool::deflated(""), "");
}

} // namespace
