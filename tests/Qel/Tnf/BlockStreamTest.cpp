#include <Qel/Tnf/BlockStream.h>

#include "Qel/Support/BlockSizeGuard.h"
#include "Qel/Support/Blocks.h"
#include "Qel/Tnf/IndexPeer.h"
#include "Support/Thrown.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <numeric>
#include <string>
#include <vector>

namespace {

using QelTnf::IndexPeer;
using Support::Bytes;
using Support::ByteVector;
using Support::contentOf;

class BlockStream : public testing::Test {
protected:
    const QelTnf::Block& block(std::size_t id) const { return index.GetBlocks()[id]; }

    /// The sizes of all blocks that have been opened.
    std::vector<std::uint32_t> sizes() const {
        std::vector<std::uint32_t> result;
        for (const QelTnf::Block& each : index.GetBlocks()) {
            if (each.GetCapacity() != 0) {
                result.push_back(each.GetSize());
            }
        }
        return result;
    }

    const std::string name = "a";
    Support::BlockSizeGuard variable;
    QelTnf::Index index;
};

TEST_F(BlockStream, OfANewNameOpensNoBlockBeforeItsFirstValue) {
    QelTnf::BlockStream stream(index, name);
    EXPECT_TRUE(index.GetBlockInfos().empty());
    EXPECT_EQ(stream.GetSize(), 0U);
    stream.Put(7U);
    EXPECT_EQ(index.GetBlockInfos()[0].name, "a");
    EXPECT_EQ(contentOf(block(0)), (ByteVector{7, 0, 0, 0}));
    EXPECT_EQ(stream.GetSize(), 4U);
}

TEST_F(BlockStream, ValuesGoAfterThoseThatTheNameHas) {
    index.Put("a", std::string("b"));
    QelTnf::BlockStream stream(index, name);
    EXPECT_EQ(stream.GetSize(), 5U);
    stream.Put(true);
    index.Put("a", static_cast<unsigned char>(3));
    stream.Put(std::string("cd"));
    EXPECT_EQ(contentOf(block(0)), Bytes().text("b").u8(1).u8(3).text("cd"));
    EXPECT_EQ(stream.GetSize(), 13U);
}

TEST_F(BlockStream, SizeCountsWhatOthersPutBeforeItsOwnFirstValue) {
    QelTnf::BlockStream stream(index, name);
    index.Put("a", 7U);
    EXPECT_EQ(stream.GetSize(), 4U);
    stream.Put(8U);
    EXPECT_EQ(contentOf(block(0)), (ByteVector{7, 0, 0, 0, 8, 0, 0, 0}));
}

// Values of 4, 1, 12 and 7 bytes: wherever the limit falls, a value goes into a new block exactly if the last
// block holds at least the limit.
TEST_F(BlockStream, LimitAtEveryByteDividesOnlyBetweenValues) {
    using Sizes = std::vector<std::uint32_t>;
    std::vector<Sizes> expected(2, Sizes{4, 1, 12, 7});
    expected.insert(expected.end(), 3, Sizes{4, 13, 7}); // from 2 on
    expected.insert(expected.end(), 1, Sizes{5, 12, 7});
    expected.insert(expected.end(), 12, Sizes{17, 7}); // from 6 on
    expected.insert(expected.end(), 2, Sizes{24});
    for (std::size_t limit = 0; limit < expected.size(); ++limit) {
        variable.set(std::to_string(limit));
        QelTnf::Index limited;
        QelTnf::BlockStream stream(limited, name);
        stream.Put(0xA3A2A1A0U);
        stream.Put(static_cast<unsigned char>(0xB0));
        const std::vector<unsigned char> bytes(12, 0xC0);
        stream.Put(bytes.data(), 12);
        stream.Put(std::string("def"));
        std::vector<std::uint32_t> sizesOfBlocks;
        ByteVector content;
        for (std::size_t id = 0; id < expected[limit].size(); ++id) {
            sizesOfBlocks.push_back(limited.GetBlocks()[id].GetSize());
            const ByteVector part = contentOf(limited.GetBlocks()[id]);
            content.insert(content.end(), part.begin(), part.end());
        }
        EXPECT_EQ(sizesOfBlocks, expected[limit]) << limit;
        EXPECT_EQ(content, Bytes().u32(0xA3A2A1A0).u8(0xB0).fill(12, 0xC0).text("def")) << limit;
        EXPECT_EQ(stream.GetSize(), 24U) << limit;
    }
}

TEST_F(BlockStream, SeveralAppendsToTheNextBlockAreOneValue) {
    variable.set("2");
    QelTnf::BlockStream stream(index, name);
    QelTnf::Block& next = stream.NextBlock();
    next.Append(1U);
    next.Append(2U);
    stream.Put(3U);
    EXPECT_EQ(sizes(), (std::vector<std::uint32_t>{8, 4}));
}

// More blocks than the catalogue has entries at first, so that blocks move in memory between two values.
TEST_F(BlockStream, TwoStreamsInTurnKeepTheirOrderAcrossManyBlocks) {
    variable.set("1");
    const std::string other = "b";
    QelTnf::BlockStream first(index, name);
    QelTnf::BlockStream second(index, other);
    for (unsigned char i = 0; i < 250; ++i) {
        first.Put(i);
        second.Put(static_cast<unsigned char>(255 - i));
    }
    ByteVector ofFirst;
    ByteVector ofSecond;
    for (std::size_t id = 0; id < index.GetBlocks().size(); ++id) {
        if (index.GetBlockInfos()[id].name == "a") {
            ofFirst.push_back(block(id).GetData()[0]);
        } else if (index.GetBlockInfos()[id].name == "b") {
            ofSecond.push_back(block(id).GetData()[0]);
        }
    }
    ByteVector rising(250);
    std::iota(rising.begin(), rising.end(), std::uint8_t{0});
    ByteVector falling(rising);
    for (std::uint8_t& byte : falling) {
        byte = static_cast<std::uint8_t>(255 - byte);
    }
    EXPECT_EQ(ofFirst, rising);
    EXPECT_EQ(ofSecond, falling);
    EXPECT_EQ(first.GetSize(), 250U);
}

TEST_F(BlockStream, FrozenBlockIsFollowedByANewOne) {
    index.Put("a", 1U);
    QelTnf::BlockStream stream(index, name);
    IndexPeer::entries(index)[0].frozen = true;
    stream.Put(2U);
    EXPECT_EQ(block(0).GetSize(), 4U);
    EXPECT_EQ(contentOf(block(1)), (ByteVector{2, 0, 0, 0}));
}

TEST_F(BlockStream, BlockThatIsFrozenWhenItIsOpenedIsRefusedAndTheNextValueOpensAnother) {
    index.Put("a", 1U);
    QelTnf::BlockStream stream(index, name);
    IndexPeer::entries(index)[0].frozen = true;
    IndexPeer::entries(index)[1].frozen = true;
    EXPECT_TRUE(Support::throws<Qel::Exception::MiscelleneousException>(
        {2, "Attempt to write into a frozen block", "Qel/Tnf/BlockStream", "QelTnf::BlockStream::OpenBlock"},
        [&] { stream.Put(2U); }));
    EXPECT_EQ(block(1).GetSize(), 0U);
    stream.Put(3U);
    EXPECT_EQ(contentOf(block(2)), (ByteVector{3, 0, 0, 0}));
}

TEST_F(BlockStream, GrowthStepIsThatOfTheEnvironmentWhenItIsMade) {
    variable.set("16");
    QelTnf::BlockStream stream(index, name);
    EXPECT_EQ(QelTnf::defaultBlockSize, 16U);
    variable.set("100");
    stream.Put(1U);
    stream.Put("ab", 2);
    stream.Put(std::string("c"));
    stream.Put(std::vector<std::string>{"d"});
    EXPECT_EQ(QelTnf::defaultBlockSize, 16U);
    EXPECT_EQ(block(0).GetSize(), 20U);
    EXPECT_EQ(block(0).GetCapacity(), 32U);
}

// The limit belongs to the name's first block, which only the first value opens.
TEST_F(BlockStream, LimitIsThatOfTheEnvironmentAtTheFirstValue) {
    variable.set("100");
    QelTnf::BlockStream stream(index, name);
    variable.set("4");
    stream.Put(1U);
    variable.set({});
    stream.Put(2U);
    EXPECT_EQ(sizes(), (std::vector<std::uint32_t>{4, 4}));
}

} // namespace
