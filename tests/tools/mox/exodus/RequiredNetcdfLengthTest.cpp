#include "exodus/requiredNetcdfLength.h"

#include <gtest/gtest.h>

#include <sstream>
#include <stdexcept>
#include <string>

namespace {

// Writes the bytes of a header, most significant first.
class Header {
public:
    Header& raw(const std::string& text) {
        bytes_ += text;
        return *this;
    }
    Header& word(unsigned int value) {
        for (int shift = 24; shift >= 0; shift -= 8) {
            bytes_ += static_cast<char>(value >> shift & 0xFFU);
        }
        return *this;
    }
    Header& absentList() { return word(0).word(0); }
    // A name of four letters needs no padding.
    Header& name(const std::string& text) { return word(4).raw(text); }

    std::uint64_t requiredLength() const {
        std::istringstream file(bytes_);
        return MoxTool::requiredNetcdfLength(file);
    }
    std::uint64_t requiredLengthOf(std::size_t size) const {
        std::istringstream file(bytes_.substr(0, size));
        return MoxTool::requiredNetcdfLength(file);
    }
    std::size_t size() const { return bytes_.size(); }

private:
    std::string bytes_;
};

constexpr unsigned int DimensionList = 0x0A;
constexpr unsigned int VariableList = 0x0B;
constexpr unsigned int Int = 4;
constexpr unsigned int Double = 6;
constexpr unsigned int Char = 2;

// Dimensions "time" (of the records) and "node" of 5; CDF-1 with a number of records.
Header twoDimensions(unsigned int records) {
    Header header;
    header.raw(std::string("CDF\x01")).word(records);
    header.word(DimensionList).word(2).name("time").word(0).name("node").word(5);
    header.absentList();
    return header;
}

Header& variable(Header& header, std::initializer_list<unsigned int> dimensions, unsigned int type,
                 unsigned int begin) {
    header.name("vari").word(static_cast<unsigned int>(dimensions.size()));
    for (const auto dimension : dimensions) {
        header.word(dimension);
    }
    return header.absentList().word(type).word(0).word(begin);
}

} // namespace

TEST(NetcdfLength, FixedVariableEndsTheFile) {
    auto header = twoDimensions(0);
    header.word(VariableList).word(1);
    variable(header, {1}, Double, 200);
    EXPECT_EQ(header.requiredLength(), 240U);
}

TEST(NetcdfLength, RecordsOfSeveralVariablesArePadded) {
    auto header = twoDimensions(3);
    header.word(VariableList).word(2);
    variable(header, {0}, Double, 200);
    variable(header, {0, 1}, Char, 208);
    EXPECT_EQ(header.requiredLength(), 208U + 2 * (8 + 8) + 5);
}

TEST(NetcdfLength, RecordsOfOneVariableAreNotPadded) {
    auto header = twoDimensions(3);
    header.word(VariableList).word(1);
    variable(header, {0, 1}, Char, 200);
    EXPECT_EQ(header.requiredLength(), 215U);
}

TEST(NetcdfLength, WithoutRecordsTheirVariablesTakeNoRoom) {
    auto header = twoDimensions(0);
    header.word(VariableList).word(2);
    variable(header, {1}, Int, 200);
    variable(header, {0, 1}, Double, 220);
    EXPECT_EQ(header.requiredLength(), 220U);
}

TEST(NetcdfLength, EveryCutOfAHeaderIsNoticed) {
    auto header = twoDimensions(1);
    header.word(VariableList).word(1);
    variable(header, {0, 1}, Double, 200);
    for (std::size_t size = 0; size < header.size(); ++size) {
        EXPECT_THROW(header.requiredLengthOf(size), std::runtime_error) << size;
    }
}

TEST(NetcdfLength, UnknownDimensionIsNoticed) {
    auto header = twoDimensions(1);
    header.word(VariableList).word(1);
    variable(header, {7}, Double, 200);
    EXPECT_THROW(header.requiredLength(), std::runtime_error);
}

TEST(NetcdfLength, UnknownTypeIsNoticed) {
    auto header = twoDimensions(1);
    header.word(VariableList).word(1);
    variable(header, {1}, 99, 200);
    EXPECT_THROW(header.requiredLength(), std::runtime_error);
}

TEST(NetcdfLength, HugeDimensionsDoNotWrapAround) {
    Header header;
    header.raw(std::string("CDF\x01")).word(0).word(DimensionList).word(1).name("huge").word(0xFFFFFFFF);
    header.absentList().word(VariableList).word(1);
    variable(header, {0, 0, 0}, Double, 200);
    EXPECT_GT(header.requiredLength(), std::uint64_t{1} << 60U);
}

TEST(NetcdfLength, OtherFilesAreRefused) {
    std::istringstream other("<?xml version=\"1.0\"?>");
    EXPECT_THROW(MoxTool::requiredNetcdfLength(other), std::runtime_error);
}
