#include "common/safeFileName.h"

#include <gtest/gtest.h>

using MoxTool::safeFileName;

TEST(SafeFileName, KeepsWhatEveryFileSystemTakes) {
    EXPECT_EQ(safeFileName("Stress-xx_1.5"), "Stress-xx_1.5");
}

TEST(SafeFileName, EachRunOfOtherBytesBecomesOneUnderscore) {
    EXPECT_EQ(safeFileName("a/b\\c: d\n\n*?ü.csv"), "a_b_c_d_.csv");
    EXPECT_EQ(safeFileName("//"), "_");
    EXPECT_EQ(safeFileName(std::string_view("\0x", 2)), "_x");
}

TEST(SafeFileName, IsCutAt80Bytes) {
    EXPECT_EQ(safeFileName(std::string(300, 'x')), std::string(80, 'x'));
}
