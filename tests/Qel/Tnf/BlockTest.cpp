#include <Qel/Tnf/Block.h>

#include "Qel/Support/AddressSpaceLimit.h"
#include "Qel/Support/BlockSizeGuard.h"
#include "Qel/Support/Blocks.h"
#include "Support/Bytes.h"
#include "Support/TemporaryFolder.h"
#include "Support/Thrown.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>

namespace {

using Support::Bytes;
using Support::ByteVector;
using Support::contentOf;
using Support::Thrown;

const std::uint32_t stepOfANewProcess = QelTnf::defaultBlockSize;

const Thrown noMemory = {16, "Memory allocation error", "Qel/Tnf/Block",
                         "QelTnf::Block::AllocateAdditionalMemory"};

class Block : public testing::Test {
protected:
    ~Block() override { block.Release(); }

    void put(const ByteVector& bytes) { Support::putInto(block, bytes); }
    void putZeros(std::size_t count) { put(ByteVector(count)); }

    Support::BlockSizeGuard variable;
    QelTnf::Block block;
};

// --- Growth

TEST(BlockSize, GrowthStepOfANewProcessIs10MiB) {
    EXPECT_EQ(stepOfANewProcess, 10'485'760U);
}

TEST_F(Block, NewOneIsEmptyAndHasNoBuffer) {
    EXPECT_EQ(block.GetData(), nullptr);
    EXPECT_EQ(block.GetCapacity(), 0U);
    EXPECT_EQ(block.GetSize(), 0U);
    EXPECT_EQ(block.GetPosition(), 0U);
}

TEST_F(Block, FirstPutAllocatesOneStep) {
    put({1, 2, 3});
    EXPECT_EQ(block.GetCapacity(), 10'485'760U);
    EXPECT_EQ(block.GetSize(), 3U);
    EXPECT_EQ(block.GetPosition(), 3U);
    EXPECT_EQ(contentOf(block), (ByteVector{1, 2, 3}));
}

TEST_F(Block, PutOf11MiBIntoANewBlockGrowsItBy11MiBNotBy10) {
    putZeros(11'534'336);
    EXPECT_EQ(block.GetCapacity(), 11'534'336U);
    EXPECT_EQ(block.GetSize(), 11'534'336U);
}

TEST_F(Block, PutThatEndsOneByteBeforeCapacityDoesNotGrow) {
    variable.set("16");
    putZeros(15);
    EXPECT_EQ(block.GetCapacity(), 16U);
}

TEST_F(Block, PutThatEndsExactlyAtCapacityGrowsTheBufferFirst) {
    variable.set("16");
    putZeros(15);
    putZeros(1);
    EXPECT_EQ(block.GetCapacity(), 32U);
    EXPECT_EQ(block.GetSize(), 16U);
}

TEST_F(Block, GrowsByOneStepAtATimeAndDoesNotDouble) {
    variable.set("16");
    for (const unsigned int capacity : {16U, 32U, 32U, 48U, 64U, 64U, 80U}) {
        putZeros(10);
        EXPECT_EQ(block.GetCapacity(), capacity);
    }
}

TEST_F(Block, GrowsByTheRequestWhereThatIsLargerThanTheStep) {
    variable.set("16");
    putZeros(10);
    putZeros(40);
    EXPECT_EQ(block.GetCapacity(), 56U);
}

TEST_F(Block, KeepsItsContentWhenItGrows) {
    variable.set("4");
    put({1, 2, 3});
    put({4, 5, 6});
    put({7, 8, 9});
    EXPECT_EQ(contentOf(block), (ByteVector{1, 2, 3, 4, 5, 6, 7, 8, 9}));
}

TEST_F(Block, PutOfNothingIntoANewBlockAllocatesAllTheSame) {
    putZeros(0);
    EXPECT_EQ(block.GetCapacity(), 10'485'760U);
    EXPECT_EQ(block.GetSize(), 0U);
}

TEST_F(Block, ValueThatFitsBetweenTheWritePositionAndTheEndDoesNotMakeTheBlockGrow) {
    variable.set("16");
    put({1, 2, 3, 4, 5, 6, 7, 8, 9, 10});
    block.SetPosition(0);
    put({11, 12, 13, 14, 15, 16, 17, 18});
    EXPECT_EQ(block.GetCapacity(), 16U);
    EXPECT_EQ(contentOf(block), (ByteVector{11, 12, 13, 14, 15, 16, 17, 18, 9, 10}));
}

TEST_F(Block, AllocateAdditionalMemoryAddsExactlySoManyBytes) {
    put({1, 2, 3});
    block.AllocateAdditionalMemory(5);
    EXPECT_EQ(block.GetCapacity(), 10'485'765U);
    EXPECT_EQ(contentOf(block), (ByteVector{1, 2, 3}));
}

// --- The environment's variable

TEST_F(Block, VariableSetsTheStep) {
    variable.set("1048576");
    putZeros(1);
    EXPECT_EQ(QelTnf::defaultBlockSize, 1'048'576U);
    EXPECT_EQ(block.GetCapacity(), 1'048'576U);
}

TEST_F(Block, ChangeOfTheVariableTakesEffectAtTheNextPut) {
    variable.set("16");
    putZeros(1);
    variable.set("100");
    putZeros(15);
    EXPECT_EQ(block.GetCapacity(), 116U);
}

TEST_F(Block, StepKeepsTheLastParsedValueWhenTheVariableIsRemoved) {
    variable.set("16");
    putZeros(1);
    variable.set({});
    putZeros(15);
    EXPECT_EQ(QelTnf::defaultBlockSize, 16U);
    EXPECT_EQ(block.GetCapacity(), 32U);
}

TEST_F(Block, StepOfZeroGrowsTheBufferByExactlyWhatIsPut) {
    variable.set("0");
    putZeros(5);
    EXPECT_EQ(QelTnf::defaultBlockSize, 0U);
    EXPECT_EQ(block.GetCapacity(), 5U);
    putZeros(3);
    EXPECT_EQ(block.GetCapacity(), 8U);
}

TEST_F(Block, StepOfZeroAndAPutOfNothingIntoANewBlockIsNoFailure) {
    variable.set("0");
    EXPECT_NO_THROW(putZeros(0));
    EXPECT_EQ(block.GetSize(), 0U);
    EXPECT_EQ(block.GetCapacity(), 0U);
    EXPECT_EQ(block.GetData(), nullptr);
}

TEST_F(Block, VariableThatCountsAsNotSetLeavesTheStep) {
    variable.set("16");
    putZeros(1);
    for (const char* const value : {"4294967295", "4294967296", "99999999999999999999999", "-1"}) {
        variable.set(value);
        putZeros(1);
        EXPECT_EQ(QelTnf::defaultBlockSize, 16U) << value;
    }
}

TEST_F(Block, LargestStepIsOneBelowTheValueThatCountsAsNotSet) {
    putZeros(1);
    variable.set("-2");
    putZeros(1);
    EXPECT_EQ(QelTnf::defaultBlockSize, 4'294'967'294U);
}

TEST_F(Block, TextPutsLookTheVariableUpAsWell) {
    variable.set("32");
    block.Put(std::string("ab"));
    EXPECT_EQ(QelTnf::defaultBlockSize, 32U);
}

// --- Values

TEST_F(Block, PutOverwritesAtALowerPositionAndLeavesTheSize) {
    put({1, 2, 3, 4, 5});
    block.SetPosition(1);
    put({8, 9});
    EXPECT_EQ(contentOf(block), (ByteVector{1, 8, 9, 4, 5}));
    EXPECT_EQ(block.GetSize(), 5U);
    EXPECT_EQ(block.GetPosition(), 3U);
}

TEST_F(Block, PutAcrossTheEndOverwritesAndExtends) {
    put({1, 2, 3});
    block.SetPosition(2);
    put({8, 9});
    EXPECT_EQ(contentOf(block), (ByteVector{1, 2, 8, 9}));
}

TEST_F(Block, TextIsItsLengthAndItsBytesWithoutATerminator) {
    block.Put(std::string("ab\0c", 4));
    EXPECT_EQ(contentOf(block), (ByteVector{4, 0, 0, 0, 'a', 'b', 0, 'c'}));
}

TEST_F(Block, EmptyTextIsTheFourBytesOfAZeroLength) {
    block.Put(std::string());
    EXPECT_EQ(contentOf(block), (ByteVector{0, 0, 0, 0}));
}

// Where nothing follows the length, a put of no bytes at the buffer's very end would make it grow.
TEST_F(Block, EmptyTextPutsNothingAfterItsLength) {
    variable.set("4");
    block.Put(std::string());
    EXPECT_EQ(block.GetCapacity(), 4U);
    EXPECT_EQ(contentOf(block), (ByteVector{0, 0, 0, 0}));
}

TEST_F(Block, AppendLeavesTheVariableAlone) {
    variable.set("32");
    block.Append(1U);
    block.Append(std::string("ab"));
    EXPECT_EQ(QelTnf::defaultBlockSize, 10'485'760U);
    EXPECT_EQ(contentOf(block), (ByteVector{1, 0, 0, 0, 2, 0, 0, 0, 'a', 'b'}));
}

TEST_F(Block, ExtendGivesThePlaceOfTheNextBytesAndMovesPastThem) {
    variable.set("4");
    put({1, 2, 3});
    unsigned char* const place = block.Extend(2);
    EXPECT_EQ(place, block.GetData() + 3);
    place[0] = 8;
    place[1] = 9;
    EXPECT_EQ(contentOf(block), (ByteVector{1, 2, 3, 8, 9}));
    EXPECT_EQ(block.GetPosition(), 5U);
}

TEST_F(Block, ExtendBelowTheSizeLeavesTheSizeAndTheBytes) {
    put({1, 2, 3});
    block.SetPosition(1);
    EXPECT_EQ(block.Extend(1), block.GetData() + 1);
    EXPECT_EQ(block.GetPosition(), 2U);
    EXPECT_EQ(contentOf(block), (ByteVector{1, 2, 3}));
}

TEST_F(Block, RecordReachesBackToPatchItsLengthAndGoesOnAtItsEnd) {
    put({7});
    const std::uint32_t start = block.GetPosition();
    block.Put(0U);
    put({1, 2, 3});
    const std::uint32_t end = block.GetPosition();
    block.SetPosition(start);
    block.Put(end - start);
    block.SetPosition(end);
    put({9});
    EXPECT_EQ(contentOf(block), (ByteVector{7, 7, 0, 0, 0, 1, 2, 3, 9}));
}

TEST_F(Block, PositionCanBeSetToTheSize) {
    put({1, 2, 3});
    block.SetPosition(0);
    block.SetPosition(3);
    EXPECT_EQ(block.GetPosition(), 3U);
}

TEST_F(Block, PositionBeyondTheSizeIsRefusedAndTheBlockTakesValuesAsBefore) {
    put({1, 2, 3});
    block.SetPosition(1);
    EXPECT_TRUE(Support::throws<Qel::Exception::OutOfBounds>(
        {11, "Invalid block position", "Qel/Tnf/Block", "QelTnf::Block::SetPosition"},
        [this] { block.SetPosition(4); }));
    EXPECT_EQ(block.GetPosition(), 1U);
    put({9});
    EXPECT_EQ(contentOf(block), (ByteVector{1, 9, 3}));
}

// An address space of 32 bits does not hold such a block.
#if SIZE_MAX > 0xFFFFFFFF
TEST_F(Block, PositionWrapsUnreportedAt4GiBAndTheSizeStays) {
    std::unique_ptr<unsigned char, void (*)(void*)> buffer(
        static_cast<unsigned char*>(std::calloc(0x100000020, 1)), std::free);
    if (buffer == nullptr) {
        GTEST_SKIP() << "needs an address space of more than 4 GiB";
    }
    QelTnf::Block large = Support::blockOf({buffer.get(), 0x100000020, 0xFFFFFFF0, 0xFFFFFFF0});
    Support::putInto(large, Bytes().fill(32, 0xAB));
    EXPECT_EQ(large.GetPosition(), 0x10U);
    EXPECT_EQ(large.GetSize(), 0xFFFFFFF0U);
    EXPECT_EQ(buffer.get()[0x10000000F], 0xAB);
}
#endif

// The buffer is far smaller than the block believes: the required growth fails before anything is copied.
TEST_F(Block, PutThatPasses4GiBNeedsRoomForAllOfItsBytes) {
    if (!Support::AddressSpaceLimit::isAvailable()) {
        GTEST_SKIP() << "needs a limit to the address space";
    }
    const std::unique_ptr<unsigned char, void (*)(void*)> buffer(static_cast<unsigned char*>(std::malloc(16)),
                                                                 std::free);
    QelTnf::Block large = Support::blockOf({buffer.get(), 0xFFFFFFF8, 0xFFFFFFF0, 0xFFFFFFF0});
    const Support::AddressSpaceLimit limit;
    EXPECT_TRUE(Support::throws<Qel::Exception::MemoryAllocationException>(
        noMemory, [&] { Support::putInto(large, Bytes().fill(32, 0xAB)); }));
    EXPECT_EQ(large.GetPosition(), 0xFFFFFFF0U);
}

// --- No memory

TEST_F(Block, FailedAllocationOfAPutLeavesTheBlockAndStoresNothing) {
    if (!Support::AddressSpaceLimit::isAvailable()) {
        GTEST_SKIP() << "needs a limit to the address space";
    }
    variable.set("4");
    put({1, 2, 3});
    const auto* const buffer = block.GetData();
    {
        const Support::AddressSpaceLimit limit;
        variable.set("4294967294");
        EXPECT_TRUE(Support::throws<Qel::Exception::MemoryAllocationException>(noMemory, [this] {
            put({4, 5, 6});
        }));
    }
    EXPECT_EQ(block.GetData(), buffer);
    EXPECT_EQ(block.GetCapacity(), 4U);
    EXPECT_EQ(block.GetPosition(), 3U);
    EXPECT_EQ(contentOf(block), (ByteVector{1, 2, 3}));
    variable.set("4");
    put({4, 5, 6});
    EXPECT_EQ(contentOf(block), (ByteVector{1, 2, 3, 4, 5, 6}));
}

TEST_F(Block, SumOfCapacityAndAdditionalMemoryIsHeldAtTheLargestNumberInsteadOfWrapping) {
    variable.set("16");
    put({1, 2, 3});
    EXPECT_TRUE(Support::throws<Qel::Exception::MemoryAllocationException>(
        noMemory, [this] { block.AllocateAdditionalMemory(0xFFFFFFFFFFFFFFFF); }));
    EXPECT_EQ(block.GetCapacity(), 16U);
    EXPECT_EQ(contentOf(block), (ByteVector{1, 2, 3}));
}

// Ten bytes beyond 2^64 with the capacity, and three below with the size.
TEST_F(Block, AllocationThatOverflowsWithTheCapacityAloneFails) {
    variable.set("16");
    put({1, 2, 3});
    EXPECT_TRUE(Support::throws<Qel::Exception::MemoryAllocationException>(
        noMemory, [this] { block.AllocateAdditionalMemory(0xFFFFFFFFFFFFFFFA); }));
    EXPECT_EQ(block.GetCapacity(), 16U);
    EXPECT_EQ(contentOf(block), (ByteVector{1, 2, 3}));
}

// --- Writing

class BlockFile : public Block {
protected:
    /// The contents of a new file after an action with it.
    template <typename Action>
    ByteVector fileAfter(Action action) {
        std::FILE* const stream = std::fopen(path.c_str(), "wb");
        action(stream);
        std::fclose(stream);
        return Support::bytesOf(path);
    }

    Support::TemporaryFolder folder;
    const std::string path = folder.path("file");
};

TEST_F(BlockFile, WriteWithoutLengthWritesTheContent) {
    put({1, 2, 3});
    EXPECT_EQ(fileAfter([this](std::FILE* stream) { block.Write(stream, false); }), (ByteVector{1, 2, 3}));
}

TEST_F(BlockFile, WriteWithLengthWritesTheSizeFirst) {
    put({1, 2, 3});
    EXPECT_EQ(fileAfter([this](std::FILE* stream) { block.Write(stream, true); }),
              (ByteVector{3, 0, 0, 0, 1, 2, 3}));
}

TEST_F(BlockFile, WriteOfAnEmptyBlockWithLengthWritesFourZeroBytesAndNothingElse) {
    EXPECT_EQ(fileAfter([this](std::FILE* stream) { block.Write(stream, true); }), (ByteVector{0, 0, 0, 0}));
}

TEST_F(BlockFile, WriteOfAnEmptyBlockWithoutLengthWritesNothing) {
    EXPECT_EQ(fileAfter([this](std::FILE* stream) { block.Write(stream, false); }), ByteVector());
}

TEST_F(BlockFile, WriteGoesWhereTheStreamStands) {
    put({1, 2});
    EXPECT_EQ(fileAfter([this](std::FILE* stream) {
                  std::fputs("abc", stream);
                  block.Write(stream, false);
                  block.Write(stream, false);
              }),
              (ByteVector{'a', 'b', 'c', 1, 2, 1, 2}));
}

TEST_F(BlockFile, WriteTakesTheWholeContentWhereverThePositionIs) {
    put({1, 2, 3});
    block.SetPosition(1);
    EXPECT_EQ(fileAfter([this](std::FILE* stream) { block.Write(stream, false); }), (ByteVector{1, 2, 3}));
    EXPECT_EQ(block.GetPosition(), 1U);
    EXPECT_EQ(contentOf(block), (ByteVector{1, 2, 3}));
}

/// A file that is open for reading, with its end-of-file indicator set.
class EndedFile : public BlockFile {
protected:
    EndedFile() {
        fileAfter([](std::FILE*) {});
        stream = std::fopen(path.c_str(), "rb");
        std::fgetc(stream);
    }
    ~EndedFile() override { std::fclose(stream); }

    std::FILE* stream;
    const Thrown unableToWrite = {7, "Unable to write to file", "Qel/Tnf/Block", "QelTnf::Block::Write"};
};

TEST_F(EndedFile, SetIndicatorIsAFailureAlsoWhenNothingIsWritten) {
    EXPECT_TRUE(Support::throws<Qel::Exception::FileWriteException>(unableToWrite,
                                                                    [this] { block.Write(stream, false); }));
}

TEST_F(EndedFile, BlockIsUnchangedAndCanBeWrittenElsewhere) {
    put({1, 2, 3});
    EXPECT_TRUE(Support::throws<Qel::Exception::FileWriteException>(unableToWrite,
                                                                    [this] { block.Write(stream, true); }));
    EXPECT_EQ(fileAfter([this](std::FILE* other) { block.Write(other, false); }), (ByteVector{1, 2, 3}));
}

TEST_F(BlockFile, WriteErrorOfTheStreamPassesUnseen) {
    fileAfter([](std::FILE*) {});
    std::FILE* const stream = std::fopen(path.c_str(), "rb");
    put({1, 2, 3});
    EXPECT_NO_THROW(block.Write(stream, true));
    EXPECT_NE(std::ferror(stream), 0);
    std::fclose(stream);
    EXPECT_EQ(std::filesystem::file_size(path), 0U);
}

TEST_F(BlockFile, FullDiskPassesUnseen) {
    if (!std::filesystem::exists("/dev/full")) {
        GTEST_SKIP() << "needs a device that is always full";
    }
    std::FILE* const stream = std::fopen("/dev/full", "wb");
    putZeros(100'000);
    EXPECT_NO_THROW(block.Write(stream, true));
    EXPECT_NE(std::ferror(stream), 0);
    std::fclose(stream);
}

// --- Leaving memory

TEST_F(Block, ReleaseFreesTheBufferAndLeavesTheOtherFields) {
    variable.set("16");
    put({1, 2, 3});
    block.Release();
    EXPECT_EQ(block.GetData(), nullptr);
    EXPECT_EQ(block.GetCapacity(), 16U);
    EXPECT_EQ(block.GetSize(), 3U);
    EXPECT_EQ(block.GetPosition(), 3U);
}

TEST_F(Block, ResetMakesANewBlockOfAReleasedOne) {
    put({1, 2, 3});
    block.Release();
    block.Reset();
    EXPECT_EQ(block.GetCapacity(), 0U);
    EXPECT_EQ(block.GetSize(), 0U);
    EXPECT_EQ(block.GetPosition(), 0U);
    put({4});
    EXPECT_EQ(contentOf(block), (ByteVector{4}));
}

// A size whose memory the system's allocator is likely to return again with its old contents.
TEST_F(Block, ValueForAReleasedBlockStandsAfterZerosAndNotAfterWhatWasInMemory) {
    variable.set("0");
    put(Bytes().fill(3000, 0xAB));
    block.Release();
    put({4, 5});
    EXPECT_EQ(contentOf(block), Bytes().zeros(3000).u8(4).u8(5));
    EXPECT_EQ(block.GetPosition(), 3002U);
    EXPECT_EQ(block.GetCapacity(), 3002U);
}

TEST_F(Block, ValueInTheMiddleOfAReleasedBlockIsSurroundedByZeros) {
    variable.set("0");
    put(Bytes().fill(3000, 0xAB));
    block.SetPosition(10);
    block.Release();
    put({4, 5});
    EXPECT_EQ(contentOf(block), Bytes().zeros(10).u8(4).u8(5).zeros(2988));
    EXPECT_EQ(block.GetPosition(), 12U);
}

TEST_F(Block, ReleasedBlockWithRoomForAValueDoesNotGrowForIt) {
    variable.set("16");
    put({1, 2, 3});
    block.Release();
    put({4});
    EXPECT_EQ(contentOf(block), (ByteVector{0, 0, 0, 4}));
    EXPECT_EQ(block.GetCapacity(), 16U);
}

TEST_F(Block, ValueForAReleasedBlockOfOneByteStandsAfterAZero) {
    variable.set("0");
    put({0xAB});
    block.Release();
    put({4});
    EXPECT_EQ(contentOf(block), (ByteVector{0, 4}));
}

TEST_F(Block, ReleasedBlockWithoutContentGetsTheCapacityBackThatItHad) {
    variable.set("8");
    block.AllocateAdditionalMemory(16);
    block.Release();
    put({1});
    EXPECT_EQ(contentOf(block), (ByteVector{1}));
    EXPECT_EQ(block.GetCapacity(), 16U);
}

TEST_F(BlockFile, LengthIsTheSizeWhereverTheWritePositionIs) {
    put({1, 2, 3});
    block.SetPosition(1);
    EXPECT_EQ(fileAfter([this](std::FILE* stream) { block.Write(stream, true); }),
              (ByteVector{3, 0, 0, 0, 1, 2, 3}));
}

TEST_F(BlockFile, ReleasedBlockWritesNothingOfItsContent) {
    put({1, 2, 3});
    block.Release();
    EXPECT_EQ(fileAfter([this](std::FILE* stream) { block.Write(stream, false); }), ByteVector());
}

TEST_F(Block, DetachHandsTheBufferOverAndLeavesAnEmptyBlock) {
    put({1, 2, 3});
    const std::unique_ptr<unsigned char, void (*)(void*)> buffer(block.Detach(), std::free);
    EXPECT_EQ(buffer.get()[2], 3);
    EXPECT_EQ(block.GetData(), nullptr);
    EXPECT_EQ(block.GetCapacity(), 0U);
    EXPECT_EQ(block.GetSize(), 0U);
    EXPECT_EQ(block.GetPosition(), 0U);
}

TEST_F(Block, AttachTakesABufferWithItsContentAndGoesOnAfterIt) {
    auto* const buffer = static_cast<unsigned char*>(std::malloc(4));
    buffer[0] = 7;
    buffer[1] = 8;
    block.Attach(buffer, 4, 2);
    EXPECT_EQ(block.GetData(), buffer);
    EXPECT_EQ(block.GetCapacity(), 4U);
    EXPECT_EQ(block.GetPosition(), 2U);
    put({9});
    EXPECT_EQ(block.GetData(), buffer);
    EXPECT_EQ(contentOf(block), (ByteVector{7, 8, 9}));
}

TEST_F(Block, CopySharesTheBuffer) {
    put({1, 2, 3});
    const QelTnf::Block copy = block;
    EXPECT_EQ(copy.GetData(), block.GetData());
    EXPECT_EQ(copy.GetSize(), 3U);
}

} // namespace
