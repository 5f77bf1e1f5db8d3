#include <Qel/Util/SourcePath.h>

#include <gtest/gtest.h>

namespace {

using QelUtil::sourcePathText;

TEST(SourcePath, BeginsAtQelAndHasNoExtension) {
    EXPECT_STREQ(sourcePathText<"/home/somebody/src/Qel/Tnf/Block.cpp">(), "Qel/Tnf/Block");
}

TEST(SourcePath, IsTheSameForHeaderSourceAndInlineFile) {
    EXPECT_STREQ(sourcePathText<"../src/Qel/Tnf/Index.h">(), "Qel/Tnf/Index");
    EXPECT_STREQ(sourcePathText<"Qel/Tnf/Index.cpp">(), "Qel/Tnf/Index");
    EXPECT_STREQ(sourcePathText<"/Qel/Tnf/Index.inl">(), "Qel/Tnf/Index");
}

TEST(SourcePath, BeginsAtTheLastQelOfThePath) {
    EXPECT_STREQ(sourcePathText<"/checkouts/Qel/moxwriter/src/Qel/Mox2/Adder/Node.cpp">(),
                 "Qel/Mox2/Adder/Node");
}

TEST(SourcePath, OutsideOfQelIsKeptWhole) {
    EXPECT_STREQ(sourcePathText<"examples/minimal.cpp">(), "examples/minimal");
}

TEST(SourcePath, OfThisFileIsMadeByTheMacro) {
    EXPECT_STREQ(QEL_SOURCE_PATH, "Qel/Util/SourcePathTest");
}

} // namespace
