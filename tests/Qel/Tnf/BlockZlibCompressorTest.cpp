#include <Qel/Tnf/BlockZlibCompressor.h>

#include "Qel/Support/AddressSpaceLimit.h"
#include "Qel/Support/BlockSizeGuard.h"
#include "Qel/Support/Blocks.h"
#include "Support/Thrown.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <random>

namespace {

using Support::Bytes;
using Support::ByteVector;
using Support::contentOf;

class BlockZlibCompressor : public testing::Test {
protected:
    ~BlockZlibCompressor() override { block.Release(); }

    void compress(int level = 6) { QelTnf::BlockZlibCompressor{level}(block); }
    ByteVector lengthWord() const { return Support::slice(contentOf(block), 0, 4); }
    ByteVector zlibStream() const { return Support::slice(contentOf(block), 4, block.GetSize()); }

    void expectEmptyBlock() const {
        EXPECT_EQ(block.GetData(), nullptr);
        EXPECT_EQ(block.GetCapacity(), 0U);
        EXPECT_EQ(block.GetSize(), 0U);
        EXPECT_EQ(block.GetPosition(), 0U);
    }

    Support::BlockSizeGuard variable;
    QelTnf::Block block;
};

/// Frees what the compressor is expected to leave without an owner. A second release would show here.
using Abandoned = std::unique_ptr<unsigned char, void (*)(void*)>;

TEST_F(BlockZlibCompressor, EmptyBlockComesOutAs12BytesOfAZeroLengthAndTheStreamOfNoData) {
    compress();
    EXPECT_EQ(contentOf(block), (ByteVector{0, 0, 0, 0, 0x78, 0x9C, 0x03, 0, 0, 0, 0, 0x01}));
}

TEST_F(BlockZlibCompressor, ContentComesOutAsItsLengthAndOneZlibStream) {
    const ByteVector content = Bytes().fill(600, 0xAB).fill(400, 0xCD);
    Support::putInto(block, content);
    compress();
    EXPECT_EQ(lengthWord(), (ByteVector{0xE8, 0x03, 0, 0}));
    EXPECT_EQ(Support::inflated(zlibStream(), 1000), content);
    EXPECT_LT(block.GetSize(), 100U);
}

TEST_F(BlockZlibCompressor, WritePositionEndsUpAfterTheCompressedContent) {
    Support::putInto(block, Bytes().fill(1000, 0xAB));
    block.SetPosition(10);
    compress();
    EXPECT_EQ(lengthWord(), (ByteVector{0xE8, 0x03, 0, 0}));
    EXPECT_EQ(block.GetPosition(), block.GetSize());
}

TEST_F(BlockZlibCompressor, ContentThatDoesNotCompressGrowsByTheOverhead) {
    std::mt19937 random(1);
    ByteVector content(1000);
    for (std::uint8_t& byte : content) {
        byte = static_cast<std::uint8_t>(random());
    }
    Support::putInto(block, content);
    compress();
    EXPECT_GT(block.GetSize(), 1004U);
    EXPECT_EQ(Support::inflated(zlibStream(), 1000), content);
}

// The bound of 1,000 bytes is 1,212.
TEST_F(BlockZlibCompressor, BlockKeepsTheRoomThatZlibWasGiven) {
    Support::putInto(block, Bytes().fill(1000, 0xAB));
    compress();
    EXPECT_EQ(block.GetCapacity(), 1216U);
}

TEST_F(BlockZlibCompressor, CompressedBlockTakesFurtherValues) {
    variable.set("16");
    Support::putInto(block, Bytes().fill(1000, 0xAB));
    compress();
    const ByteVector compressed = contentOf(block);
    const ByteVector more = Bytes().fill(2000, 0xCD);
    Support::putInto(block, more);
    EXPECT_EQ(contentOf(block), Bytes().append(compressed).append(more));
}

TEST_F(BlockZlibCompressor, LevelGoesToZlib) {
    Support::putInto(block, {1, 2, 3});
    compress(9);
    EXPECT_EQ(Support::slice(zlibStream(), 0, 2), (ByteVector{0x78, 0xDA}));
}

TEST_F(BlockZlibCompressor, IsATransformationOfBlocks) {
    QelTnf::BlockZlibCompressor compressor(6);
    QelTnf::BlockTransformation& transformation = compressor;
    transformation(block);
    EXPECT_EQ(block.GetSize(), 12U);
}

TEST_F(BlockZlibCompressor, FailureOfZlibLeavesAnEmptyBlockUnreportedAndItsContentToNobody) {
    constexpr int levelThatZlibRefuses = 42;
    Support::putInto(block, {1, 2, 3});
    const Abandoned content(Support::fieldsOf(block).data, std::free);
    EXPECT_NO_THROW(compress(levelThatZlibRefuses));
    expectEmptyBlock();
    EXPECT_EQ(content.get()[2], 3);
    Support::putInto(block, {4});
    EXPECT_EQ(contentOf(block), (ByteVector{4}));
}

// In single precision 3,579,139,584 times 1.2 are 4,294,967,808, which is 512 in 32 bits, and 3,579,139,400
// times 1.2 are 4,294,967,296, which is 0, while the product itself would be 16 less and fit. An address space
// of 32 bits does not hold such a block.
#if SIZE_MAX > 0xFFFFFFFF
TEST_F(BlockZlibCompressor, BoundWrapsIn32BitsOfSinglePrecisionSoThatZlibFailsNear4GiB) {
    for (const std::uint32_t length : {3'579'139'584U, 3'579'139'400U}) {
        const Abandoned content(static_cast<unsigned char*>(std::calloc(length, 1)), std::free);
        if (content == nullptr) {
            GTEST_SKIP() << "needs an address space of more than 4 GiB";
        }
        block = Support::blockOf({content.get(), length, length, length});
        EXPECT_NO_THROW(compress());
        expectEmptyBlock();
    }
}
#endif

TEST_F(BlockZlibCompressor, FailedAllocationLeavesAnEmptyBlockAndItsContentIsLost) {
    if (!Support::AddressSpaceLimit::isAvailable()) {
        GTEST_SKIP() << "needs a limit to the address space";
    }
    auto* const content = static_cast<unsigned char*>(std::malloc(16));
    block = Support::blockOf({content, 3'000'000'000, 3'000'000'000, 3'000'000'000});
    {
        const Support::AddressSpaceLimit limit;
        EXPECT_TRUE(Support::throws<Qel::Exception::MemoryAllocationException>(
            {16, "Memory allocation error", "Qel/Tnf/BlockZlibCompressor",
             "QelTnf::BlockZlibCompressor::operator()"},
            [this] { compress(); }));
    }
    expectEmptyBlock();
    Support::putInto(block, {4});
    EXPECT_EQ(contentOf(block), (ByteVector{4}));
}

} // namespace
