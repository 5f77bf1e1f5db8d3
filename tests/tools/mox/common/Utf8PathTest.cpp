#include "common/utf8Path.h"

#include "Support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <memory>
#include <string>

using MoxTool::pathOf;
using MoxTool::utf8Of;

namespace {

// A letter with an umlaut, two Chinese characters, and one beyond the 65536 that a unit of UTF-16 can be.
constexpr const char* NonAscii = "Tr\xC3\xA4ger-\xE6\xA8\xA1\xE5\x9E\x8B-\xF0\x9F\x94\xA7.mox";

} // namespace

TEST(Utf8Path, PathHasTheCharactersOfTheText) {
    EXPECT_EQ(pathOf(NonAscii).u16string(), u"Tr\u00E4ger-\u6A21\u578B-\U0001F527.mox");
}

TEST(Utf8Path, TextOfAPathHasItsCharacters) {
    EXPECT_EQ(utf8Of(std::filesystem::path(u"Tr\u00E4ger-\u6A21\u578B-\U0001F527.mox")), NonAscii);
}

TEST(Utf8Path, EmptyTextIsTheEmptyPath) {
    EXPECT_TRUE(pathOf("").empty());
    EXPECT_EQ(utf8Of({}), "");
}

TEST(Utf8Path, FileMadeUnderThePathIsOpenedByTheTextInTheCRuntime) {
    const Support::TemporaryFolder folder;
    const auto name = folder.path(NonAscii);
    std::ofstream(pathOf(name)) << "text";
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(name.c_str(), "rb"), std::fclose);
    ASSERT_NE(file, nullptr);
    EXPECT_EQ(std::fgetc(file.get()), 't');
}

#ifdef _WIN32
TEST(Utf8Path, BytesThatAreNotUtf8BecomeReplacementCharactersWherePathsAreUtf16) {
    EXPECT_EQ(pathOf("a\xFF\xC3z").u16string(), u"a\uFFFD\uFFFDz");
}
#else
TEST(Utf8Path, BytesThatAreNotUtf8StayWherePathsAreBytes) {
    EXPECT_EQ(pathOf("a\xFF\xC3z").native(), "a\xFF\xC3z");
    EXPECT_EQ(utf8Of(pathOf("a\xFF\xC3z")), "a\xFF\xC3z");
}
#endif
