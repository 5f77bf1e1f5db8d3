// Index::Put<T>, which is in Index.inl.

#include <Qel/Tnf/Index.h>

#include "Qel/Support/AddressSpaceLimit.h"
#include "Qel/Support/BlockSizeGuard.h"
#include "Qel/Support/Blocks.h"
#include "Qel/Tnf/IndexPeer.h"
#include "Support/Thrown.h"

#include <Qel/Mox/Material.h>
#include <Qel/Mox/ModifierInfo.h>
#include <Qel/Mox/ResultAttributes.h>
#include <Qel/Mox/VariableType.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

namespace {

using QelTnf::IndexPeer;
using Support::Bytes;
using Support::ByteVector;
using Support::contentOf;

class IndexValues : public testing::Test {
protected:
    template <typename T>
    ByteVector bytesAfterPut(const T& value) {
        index.Put("a", value);
        return contentOf(block(0));
    }
    const QelTnf::Block& block(std::size_t id) const { return index.GetBlocks()[id]; }

    Support::BlockSizeGuard variable;
    QelTnf::Index index;
};

// --- One value

TEST_F(IndexValues, UnsignedCharIsOneByte) {
    EXPECT_EQ(bytesAfterPut<unsigned char>(0xFE), (ByteVector{0xFE}));
}

TEST_F(IndexValues, TrueIsTheByte1) {
    EXPECT_EQ(bytesAfterPut(true), (ByteVector{1}));
}

TEST_F(IndexValues, FalseIsTheByte0) {
    EXPECT_EQ(bytesAfterPut(false), (ByteVector{0}));
}

TEST_F(IndexValues, IntIsFourBytesOfTwosComplement) {
    EXPECT_EQ(bytesAfterPut(-2), (ByteVector{0xFE, 0xFF, 0xFF, 0xFF}));
}

TEST_F(IndexValues, IntOfMinusOneIsFourTimes0xFF) {
    EXPECT_EQ(bytesAfterPut(-1), (ByteVector{0xFF, 0xFF, 0xFF, 0xFF}));
}

TEST_F(IndexValues, UnsignedIntIsFourBytesLeastSignificantFirst) {
    EXPECT_EQ(bytesAfterPut(0xA1B2C3D4U), (ByteVector{0xD4, 0xC3, 0xB2, 0xA1}));
}

TEST_F(IndexValues, Unsigned64BitIsEightBytesLeastSignificantFirst) {
    EXPECT_EQ(bytesAfterPut(std::uint64_t{0x0102030405060708}), (ByteVector{8, 7, 6, 5, 4, 3, 2, 1}));
}

TEST_F(IndexValues, FloatIsItsFourBytesOfSinglePrecision) {
    EXPECT_EQ(bytesAfterPut(-1.5F), (ByteVector{0, 0, 0xC0, 0xBF}));
}

TEST_F(IndexValues, VariableTypeIsTheFourBytesOfItsNumber) {
    EXPECT_EQ(bytesAfterPut(static_cast<QelMox::VariableType>(0x01020304)), (ByteVector{4, 3, 2, 1}));
}

TEST_F(IndexValues, TextIsItsLengthAndItsBytes) {
    EXPECT_EQ(bytesAfterPut(std::string("a\0b", 3)), (ByteVector{3, 0, 0, 0, 'a', 0, 'b'}));
}

TEST_F(IndexValues, EmptyTextIsFourZeroBytes) {
    EXPECT_EQ(bytesAfterPut(std::string()), (ByteVector{0, 0, 0, 0}));
}

// --- Lists

TEST_F(IndexValues, UnsignedCharListIsItsCountAndItsBytes) {
    EXPECT_EQ(bytesAfterPut(std::vector<unsigned char>{7, 8, 9}), (ByteVector{3, 0, 0, 0, 7, 8, 9}));
}

TEST_F(IndexValues, UnsignedIntListIsItsCountAndFourBytesEach) {
    EXPECT_EQ(bytesAfterPut(std::vector<unsigned int>{1, 0x200}),
              (ByteVector{2, 0, 0, 0, 1, 0, 0, 0, 0, 2, 0, 0}));
}

TEST_F(IndexValues, FloatListIsItsCountAndFourBytesEach) {
    EXPECT_EQ(bytesAfterPut(std::vector<float>{1.0F, -2.0F}),
              (ByteVector{2, 0, 0, 0, 0, 0, 0x80, 0x3F, 0, 0, 0, 0xC0}));
}

TEST_F(IndexValues, DoubleListIsItsCountAndEightBytesEach) {
    EXPECT_EQ(bytesAfterPut(std::vector<double>{1.0}),
              (ByteVector{1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0xF0, 0x3F}));
}

TEST_F(IndexValues, ListOfTwoTextsTakes14Bytes) {
    EXPECT_EQ(bytesAfterPut(std::vector<std::string>{"ab", ""}),
              (ByteVector{2, 0, 0, 0, 2, 0, 0, 0, 'a', 'b', 0, 0, 0, 0}));
}

template <typename T>
class IndexEmptyList : public IndexValues {};

using ListTypes = testing::Types<std::vector<unsigned char>, std::vector<unsigned int>, std::vector<float>,
                                 std::vector<double>, std::vector<std::string>,
                                 std::vector<QelMox::ModifierInfo>, std::vector<QelMox::ResultAttributes>>;
TYPED_TEST_SUITE(IndexEmptyList, ListTypes);

TYPED_TEST(IndexEmptyList, IsFourZeroBytes) {
    EXPECT_EQ(this->bytesAfterPut(TypeParam()), (ByteVector{0, 0, 0, 0}));
}

// --- Records

TEST_F(IndexValues, MaterialRecordOfTheDefaultsTakes84Bytes) {
    constexpr std::uint32_t one = 0x3F800000;
    constexpr std::uint32_t diffuse = 0x3F4CCCCD;
    constexpr std::uint32_t ambient = 0x3E23D70B;
    constexpr std::uint32_t fifth = 0x3E4CCCCD;
    const ByteVector expected = Bytes()
                                    .u32(84)
                                    .text("0.3")
                                    .bits({diffuse, diffuse, diffuse, one}) // diffuse
                                    .bits({0, 0, 0, one})                   // specular
                                    .bits({0, 0, 0, 0})                     // emissive
                                    .bits({ambient, ambient, ambient, fifth})
                                    .bits({0, fifth}) // transparency, shininess
                                    .u8(1);           // flag
    ASSERT_EQ(expected.size(), 84U);
    EXPECT_EQ(bytesAfterPut(QelMox::Material("")), expected);
}

TEST_F(IndexValues, MaterialRecordCountsFromItsOwnStart) {
    index.Put("a", 7U);
    index.Put("a", QelMox::Material(""));
    index.Put("a", 9U);
    const ByteVector content = contentOf(block(0));
    ASSERT_EQ(content.size(), 92U);
    EXPECT_EQ(Support::slice(content, 0, 8), (ByteVector{7, 0, 0, 0, 84, 0, 0, 0}));
    EXPECT_EQ(Support::slice(content, 88, 4), (ByteVector{9, 0, 0, 0}));
}

TEST_F(IndexValues, ModifierInfoRecordHoldsSevenTextsAndNotItsFirstField) {
    QelMox::ModifierInfo info;
    info.CollectHostInfo = 1;
    info.SourceName = "name";
    info.SourceVersion = "2";
    info.FormatVersion = "1.3";
    info.Date = "today";
    info.Computer = "c";
    info.User = "";
    info.Comment = "ok";
    // 4 for the size, 4 + 3 for the version, 7 * 4 for the lengths and 16 for the texts.
    EXPECT_EQ(bytesAfterPut(std::vector<QelMox::ModifierInfo>{info}), Bytes()
                                                                          .u32(1)
                                                                          .u32(55)
                                                                          .text("0.1")
                                                                          .text("name")
                                                                          .text("2")
                                                                          .text("1.3")
                                                                          .text("today")
                                                                          .text("c")
                                                                          .text("")
                                                                          .text("ok"));
}

TEST_F(IndexValues, EachModifierInfoOfAListIsARecordOfItsOwn) {
    const ByteVector content = bytesAfterPut(std::vector<QelMox::ModifierInfo>(2));
    ASSERT_EQ(content.size(), 82U);
    const ByteVector record = Bytes().u32(39).text("0.1").zeros(28);
    EXPECT_EQ(Support::slice(content, 0, 4), (ByteVector{2, 0, 0, 0}));
    EXPECT_EQ(Support::slice(content, 4, 39), record);
    EXPECT_EQ(Support::slice(content, 43, 39), record);
}

// --- The block of a value

TEST_F(IndexValues, FirstValueOfANameOpensItsBlockAndCreatesTheHeadEntries) {
    index.Put("a", 1U);
    index.Put("b", 2U);
    EXPECT_EQ(index.GetBlockInfos().size(), 20U);
    EXPECT_EQ(index.GetBlockInfos()[0].name, "a");
    EXPECT_EQ(index.GetBlockInfos()[1].name, "b");
}

TEST_F(IndexValues, ValuesGoOneAfterTheOther) {
    index.Put("a", static_cast<unsigned char>(1));
    index.Put("a", std::string("b"));
    index.Put("a", true);
    EXPECT_EQ(contentOf(block(0)), (ByteVector{1, 1, 0, 0, 0, 'b', 1}));
}

TEST_F(IndexValues, ValueForABlockAtItsLimitGoesIntoANewOneAndTheStreamIsUnbroken) {
    variable.set("8");
    index.Put("a", 1U);
    index.Put("a", 2U);
    index.Put("a", 3U);
    EXPECT_EQ(contentOf(block(0)), (ByteVector{1, 0, 0, 0, 2, 0, 0, 0}));
    EXPECT_EQ(contentOf(block(1)), (ByteVector{3, 0, 0, 0}));
}

TEST_F(IndexValues, ListIsNeverDividedHoweverLong) {
    variable.set("8");
    index.Put("a", std::vector<unsigned int>(1000));
    index.Put("a", 1U);
    EXPECT_EQ(block(0).GetSize(), 4004U);
    EXPECT_EQ(block(1).GetSize(), 4U);
}

TEST_F(IndexValues, RecordIsNeverDivided) {
    variable.set("1");
    index.Put("a", QelMox::Material(""));
    EXPECT_EQ(block(0).GetSize(), 84U);
}

TEST_F(IndexValues, LimitOfZeroGivesEachValueABlockOfItsOwn) {
    variable.set("0");
    index.Put("a", 1U);
    index.Put("a", std::string("b"));
    EXPECT_EQ(contentOf(block(0)), (ByteVector{1, 0, 0, 0}));
    EXPECT_EQ(contentOf(block(1)), (ByteVector{1, 0, 0, 0, 'b'}));
}

// --- Failures

TEST_F(IndexValues, BlockThatIsFrozenWhenItIsOpenedIsRefusedAndTheNextValueOpensAnother) {
    index.Put("a", 1U);
    IndexPeer::entries(index)[0].frozen = true;
    IndexPeer::entries(index)[1].frozen = true;
    EXPECT_TRUE(Support::throws<Qel::Exception::MiscelleneousException>(
        {2, "Attempt to write into a frozen block", "Qel/Tnf/Index", "QelTnf::Index::Put"},
        [this] { index.Put("a", 2U); }));
    EXPECT_EQ(block(1).GetSize(), 0U);
    index.Put("a", 3U);
    EXPECT_EQ(contentOf(block(2)), (ByteVector{3, 0, 0, 0}));
}

class IndexWithoutMemory : public IndexValues {
protected:
    /// Puts a value where the block has 16 bytes of memory, 4 of which are taken, and can't get more.
    template <typename T>
    testing::AssertionResult putFails(const T& value) {
        variable.set("16");
        index.Put("a", 7U);
        const Support::AddressSpaceLimit limit;
        variable.set("4294967294");
        return Support::throws<Qel::Exception::MemoryAllocationException>(
            {16, "Memory allocation error", "Qel/Tnf/Block", "QelTnf::Block::AllocateAdditionalMemory"},
            [&] { index.Put("a", value); });
    }

    void SetUp() override {
        if (!Support::AddressSpaceLimit::isAvailable()) {
            GTEST_SKIP() << "needs a limit to the address space";
        }
    }
};

TEST_F(IndexWithoutMemory, ListKeepsWhatWentInBeforeTheElementThatFailed) {
    EXPECT_TRUE(putFails(std::vector<unsigned int>{1, 2, 3}));
    EXPECT_EQ(contentOf(block(0)), (ByteVector{7, 0, 0, 0, 3, 0, 0, 0, 1, 0, 0, 0}));
}

TEST_F(IndexWithoutMemory, RecordKeepsASizeOfZero) {
    EXPECT_TRUE(putFails(QelMox::Material("")));
    EXPECT_EQ(contentOf(block(0)), (ByteVector{7, 0, 0, 0, 0, 0, 0, 0, 3, 0, 0, 0, '0', '.', '3'}));
}

TEST_F(IndexWithoutMemory, NameTakesValuesAgainWhenThereIsMemory) {
    EXPECT_TRUE(putFails(std::vector<unsigned int>{1, 2, 3}));
    variable.set("16");
    index.Put("a", 9U);
    EXPECT_EQ(contentOf(block(0)), (ByteVector{7, 0, 0, 0, 3, 0, 0, 0, 1, 0, 0, 0, 9, 0, 0, 0}));
}

} // namespace
