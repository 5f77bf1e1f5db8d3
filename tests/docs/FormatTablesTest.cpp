// The tables of docs/format have the numbers that the reader goes by.

#include <MoxReader/Format.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace {

namespace Format = MoxReader::Format;

using Row = std::vector<std::string>;

std::string trimmed(const std::string& text) {
    const auto first = text.find_first_not_of(" `");
    const auto last = text.find_last_not_of(" `");
    return first == std::string::npos ? "" : text.substr(first, last - first + 1);
}

Row cellsOf(const std::string& line) {
    Row cells;
    std::istringstream stream(line.substr(1));
    for (std::string cell; std::getline(stream, cell, '|');) {
        cells.push_back(trimmed(cell));
    }
    return cells;
}

bool beginsWith(const Row& cells, const Row& columns) {
    return cells.size() >= columns.size() && std::equal(columns.begin(), columns.end(), cells.begin());
}

/// The rows of the first table after a heading whose header begins with these columns.
std::vector<Row> tableOf(const std::string& page, const std::string& heading, const Row& columns) {
    std::ifstream stream(std::filesystem::path(MOXWRITER_FORMAT_PAGES) / page);
    std::string line;
    while (line != heading && std::getline(stream, line)) {
    }
    std::vector<Row> rows;
    bool isInTable = false;
    while (std::getline(stream, line)) {
        if (!line.starts_with('|')) {
            if (isInTable) {
                break;
            }
        } else if (isInTable) {
            rows.push_back(cellsOf(line));
        } else if (beginsWith(cellsOf(line), columns)) {
            isInTable = true;
            std::getline(stream, line); // the ruler below the header
        }
    }
    return rows;
}

/// The row that has this name in a column; empty cells if there is none.
Row rowOf(const std::vector<Row>& rows, std::size_t column, const std::string& name) {
    const auto row = std::ranges::find_if(rows, [&](const Row& cells) { return cells.at(column) == name; });
    return row == rows.end() ? Row(column + 4) : *row;
}

std::uint32_t numberIn(const std::string& cell) {
    return static_cast<std::uint32_t>(std::stoul(cell, nullptr, 0));
}

/// The value of a cell such as "4 + 3".
std::uint32_t sumIn(const std::string& cell) {
    const auto plus = cell.find('+');
    return numberIn(cell) + (plus == std::string::npos ? 0 : numberIn(cell.substr(plus + 1)));
}

TEST(FormatTables, FrontOfTheFileIsThatOfTheReader) {
    const auto rows = tableOf("container.md", "# The container", {"Offset", "Bytes", "Name"});
    const Row signature = rowOf(rows, 2, "signature");
    EXPECT_EQ(signature.at(0), "0");
    EXPECT_EQ(signature.at(1), std::to_string(Format::Signature.size()));
    const Row length = rowOf(rows, 2, "length of the head index");
    EXPECT_EQ(length.at(0), std::to_string(Format::HeadLengthPosition));
    EXPECT_EQ(length.at(4), std::to_string(Format::tableSize(Format::HeadRecords)));
    const Row head = rowOf(rows, 2, "head index");
    EXPECT_EQ(head.at(0), std::to_string(Format::HeadTablePosition));
    EXPECT_EQ(head.at(1), std::to_string(Format::tableSize(Format::HeadRecords)));
    EXPECT_EQ(rowOf(rows, 2, "blocks").at(0), std::to_string(Format::FirstBlockPosition));
}

TEST(FormatTables, FieldsOfAnIndexRecordFollowEachOtherAndFillIt) {
    const auto rows = tableOf("container.md", "## Index record", {"Offset", "Bytes", "Name"});
    ASSERT_EQ(rows.size(), 6U);
    std::uint32_t offset = 0;
    for (const Row& row : rows) {
        EXPECT_EQ(numberIn(row.at(0)), offset) << row.at(2);
        offset += numberIn(row.at(1));
    }
    EXPECT_EQ(offset, Format::RecordSize);
    EXPECT_EQ(rowOf(rows, 2, "name").at(1), std::to_string(Format::NameSize));
    EXPECT_EQ(rowOf(rows, 2, "name length").at(4), std::to_string(Format::NameSize));
}

TEST(FormatTables, FlagsAreThoseOfTheReader) {
    const auto rows = tableOf("container.md", "## Index record", {"Flag", "Name"});
    ASSERT_EQ(rows.size(), 2U);
    EXPECT_EQ(numberIn(rowOf(rows, 1, "compressed").at(0)), Format::FlagCompressed);
    EXPECT_EQ(numberIn(rowOf(rows, 1, "freezable").at(0)), Format::FlagFreezable);
}

TEST(FormatTables, FieldsOfAMaterialFillItsRecord) {
    std::uint32_t size = 0;
    for (const Row& row : tableOf("model.md", "## Resources", {"Bytes", "Name"})) {
        size += sumIn(row.at(0));
    }
    EXPECT_EQ(size, Format::MaterialSize);
}

TEST(FormatTables, TypesOfDatasetsAreThoseOfTheReader) {
    const auto rows = tableOf("model.md", "### Geometry, version \"0.7\"", {"Number", "Name", "Columns"});
    ASSERT_EQ(rows.size(), Format::VariableTypes.size());
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const Format::VariableTypeRow& type = Format::VariableTypes[i];
        EXPECT_EQ(numberIn(rows[i][0]), static_cast<std::uint32_t>(type.type));
        EXPECT_EQ(rows[i][1], type.name);
        EXPECT_EQ(numberIn(rows[i][2]), type.width) << type.name;
    }
}

} // namespace
