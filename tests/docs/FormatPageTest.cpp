// What docs/format says about a whole file is true of the file that is saved today, and of the reader.

#include "HexDump.h"
#include "Support/TemporaryFolder.h"
#include "saveExample.h"
#include "textOf.h"

#include <MoxReader/File.h>
#include <MoxReader/MemorySource.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <regex>
#include <string>
#include <vector>

namespace {

using Bytes = std::vector<std::uint8_t>;

const std::filesystem::path Pages = MOXWRITER_FORMAT_PAGES;
const std::filesystem::path ExampleCode = MOXWRITER_EXAMPLE_CODE;

Bytes bytesOf(const std::filesystem::path& path) {
    const auto text = textOf(path);
    return {text.begin(), text.end()};
}

std::uint32_t wordAt(const Bytes& bytes, std::size_t offset) {
    std::uint32_t word = 0;
    for (std::size_t byte = 4; byte-- > 0;) {
        word = word << 8U | bytes.at(offset + byte);
    }
    return word;
}

/// Everything before the blocks, except their lengths in the file, which depend on the zlib in use.
Bytes head(Bytes file) {
    file.resize(2800);
    for (std::size_t record = 20; record < file.size(); record += 139) {
        std::fill_n(file.begin() + static_cast<std::ptrdiff_t>(record) + 133, 4, std::uint8_t{0});
    }
    return file;
}

/// "Global Information" without its date, and without the record's size, which depends on the date.
Bytes withoutDate(const Bytes& stream) {
    std::size_t date = 8;
    for (int text = 0; text < 4; ++text) {
        date += 4 + wordAt(stream, date);
    }
    Bytes rest(stream.begin(), stream.begin() + static_cast<std::ptrdiff_t>(date));
    rest.insert(rest.end(), stream.begin() + static_cast<std::ptrdiff_t>(date + 4 + wordAt(stream, date)),
                stream.end());
    std::fill_n(rest.begin() + 4, 4, std::uint8_t{0});
    return rest;
}

Bytes streamOf(const MoxReader::File& file, const std::string& name) {
    auto stream = file.stream(name);
    const auto content = stream.readBytes(stream.size());
    return name == "Global Information" ? withoutDate(content) : content;
}

class FormatPage : public testing::Test {
protected:
    FormatPage() {
        const Support::TemporaryFolder folder;
        const std::string saved = folder.path("model.mox");
        saveExample(saved);
        today = bytesOf(saved);
    }

    static MoxReader::File open(const Bytes& bytes) {
        return MoxReader::File(std::make_shared<MoxReader::MemorySource>(bytes));
    }

    const std::string page = textOf(Pages / "example.md");
    const std::vector<HexDump> dumps = readHexDumps(page);
    Bytes today;
};

TEST_F(FormatPage, FirstDumpIsTheWholeFileAndTheOthersAreItsStreams) {
    ASSERT_EQ(7U, dumps.size());
    EXPECT_EQ("file", dumps[0].name);
    const MoxReader::File file = open(dumps[0].bytes);
    EXPECT_EQ(dumps[0].bytes.size(), file.index().end);
    ASSERT_EQ(6U, file.streamNames().size());
    for (std::size_t i = 0; i < 6; ++i) {
        const auto& dump = dumps[i + 1];
        EXPECT_EQ(file.streamNames()[i], dump.name);
        auto stream = file.stream(dump.name);
        EXPECT_EQ(dump.bytes, stream.readBytes(stream.size())) << dump.name;
    }
}

TEST_F(FormatPage, HeadIsThatOfTheFileSavedToday) {
    EXPECT_EQ(head(dumps.at(0).bytes), head(today));
}

TEST_F(FormatPage, BlocksAreThoseOfTheFileSavedToday) {
    const MoxReader::File shown = open(dumps.at(0).bytes);
    const MoxReader::File saved = open(today);
    ASSERT_EQ(shown.streamNames(), saved.streamNames());
    for (const auto& name : shown.streamNames()) {
        EXPECT_EQ(streamOf(shown, name), streamOf(saved, name)) << name;
    }
}

TEST_F(FormatPage, CodeIsThatOfTheTest) {
    const std::string opening = "```cpp\n";
    const auto begin = page.find(opening) + opening.size();
    const auto end = page.find("```\n", begin);
    ASSERT_NE(std::string::npos, end);
    EXPECT_NE(std::string::npos, textOf(ExampleCode).find(page.substr(begin, end - begin)));
}

TEST(FormatPages, LinksLeadToPages) {
    const std::regex link(R"(\]\(([^)#:]+)(#[^)]*)?\))");
    int links = 0;
    for (const auto& page : std::filesystem::directory_iterator(Pages)) {
        const std::string text = textOf(page.path());
        for (std::sregex_iterator match(text.begin(), text.end(), link), end; match != end;
             ++match, ++links) {
            EXPECT_TRUE(std::filesystem::exists(Pages / (*match)[1].str()))
                << page.path() << ": " << match->str();
        }
    }
    EXPECT_GT(links, 0);
}

TEST(FormatPages, SendNobodyToTheSource) {
    const std::regex reference(R"(see the source|source code|\bsrc/|\.cpp\b)", std::regex::icase);
    for (const auto& page : std::filesystem::directory_iterator(Pages)) {
        EXPECT_FALSE(std::regex_search(textOf(page.path()), reference)) << page.path();
    }
}

TEST(HexDumps, RepeatBytesAndIgnoreNotes) {
    const auto dumps =
        readHexDumps("text\n```hexdump a b\n00000000  01 00*3 | ff\n00000004  0a |\n```\n00 | no\n");
    ASSERT_EQ(1U, dumps.size());
    EXPECT_EQ("a b", dumps[0].name);
    EXPECT_EQ((Bytes{1, 0, 0, 0, 10}), dumps[0].bytes);
}

TEST(HexDumps, RefuseAWrongOffsetAndWhatIsNoByte) {
    EXPECT_THROW(readHexDumps("```hexdump a\n00000001  01 | x\n```\n"), std::runtime_error);
    EXPECT_THROW(readHexDumps("```hexdump a\n00000000  1 | x\n```\n"), std::runtime_error);
    EXPECT_THROW(readHexDumps("```hexdump a\n00000000  012 | x\n```\n"), std::runtime_error);
    EXPECT_THROW(readHexDumps("```hexdump a\n00000000  01\n```\n"), std::runtime_error);
}

} // namespace
