// What an index writes, and where.

#include <Qel/Tnf/Index.h>

#include "Qel/Support/AddressSpaceLimit.h"
#include "Qel/Support/BlockSizeGuard.h"
#include "Qel/Support/Blocks.h"
#include "Qel/Support/Pipe.h"
#include "Qel/Support/RecordedLog.h"
#include "Qel/Tnf/ContainerBytes.h"
#include "Qel/Tnf/IndexPeer.h"
#include "Support/TemporaryFolder.h"
#include "Support/Thrown.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

namespace {

using ContainerBytes::addFreeRecords;
using ContainerBytes::addRecord;
using ContainerBytes::compressed;
using ContainerBytes::emptyName;
using ContainerBytes::freezable;
using ContainerBytes::indexName;
using QelTnf::IndexPeer;
using Support::Bytes;
using Support::ByteVector;
using Support::contentOf;
using Support::Thrown;

const Thrown savingFailed = {7, "Saving the buffer failed", "Qel/Tnf/Index",
                             "QelTnf::Index::WriteBufferToFileStream"};
const Thrown alreadyFrozen = {17, "Invalid object state", "Qel/Tnf/Index",
                              "QelTnf::Index::WriteBufferToFileStream"};
const Thrown flushingImpossible = {20, "Not yet implemented", "Qel/Tnf/Index", "QelTnf::Index::FlushFrozen"};

/// An index and an empty file. The index does not touch the first twelve bytes of the file.
class IndexFile : public testing::Test {
protected:
    ~IndexFile() override { std::fclose(stream); }

    void put(const std::string& name, const ByteVector& bytes) {
        index.Put(name, bytes.data(), bytes.size());
    }
    void addOneByteBlocks(int count) {
        variable.set("1");
        for (int i = 1; i <= count; ++i) {
            put("a", {static_cast<std::uint8_t>(i)});
        }
    }
    /// A dataset as it is streamed, without the shuffling and the compression.
    void stream8(std::uint8_t value) {
        index.SetBlockFlags("s", freezable);
        put("s", Bytes().fill(8, value));
        index.FlushFrozen(stream);
    }
    void writeAll() { index.WriteAllBuffersToFileStream(stream); }
    void flush() { index.FlushFrozen(stream); }

    ByteVector file() const {
        std::fflush(stream);
        return Support::bytesOf(path);
    }
    ByteVector fileAt(std::uint64_t offset, std::size_t count) const {
        return Support::slice(file(), static_cast<std::size_t>(offset), count);
    }
    const QelTnf::BlockInfo& entry(std::uint64_t id) const {
        return index.GetBlockInfos()[static_cast<std::size_t>(id)];
    }
    const QelTnf::Block& block(std::size_t id) const { return index.GetBlocks()[id]; }

    Support::TemporaryFolder folder;
    const std::string path = folder.path("file");
    std::FILE* stream = std::fopen(path.c_str(), "wb");
    Support::BlockSizeGuard variable;
    QelTnf::Index index;
};

TEST_F(IndexFile, FlushAfterAllBlocksOfANameHaveGoneOutWritesNothing) {
    variable.set("8");
    put("s", Bytes().fill(8, 7));
    index.SetBlockFlags("s", freezable);
    flush();
    ASSERT_TRUE(entry(0).frozen);
    const ByteVector once = file();
    EXPECT_EQ(once.size(), 2808U);
    EXPECT_EQ(fileAt(2800, 8), ByteVector(8, 7));
    flush();
    flush();
    EXPECT_EQ(file(), once);
}

// --- Index tables

TEST_F(IndexFile, TableOfTwoBlocksIsByteForByteTheirRecords) {
    std::vector<QelTnf::BlockInfo> entries;
    entries.push_back({.number = 1, .name = "Mox Tree", .length = 300, .flags = compressed});
    entries.push_back({.number = 2, .name = "Light Data", .length = 204, .flags = compressed});
    QelTnf::Block table;
    IndexPeer::putIndexTable(table, entries);
    const Bytes expected = Bytes{2, 0, 0, 0}
                               .raw({"\x01\x80\0\0\0Mox Tree", 13})
                               .zeros(120)
                               .raw({"\x2C\x01\0\0\x01\0", 6})
                               .raw({"\x02\x80\0\0\0Light Data", 15})
                               .zeros(118)
                               .raw({"\xCC\0\0\0\x01\0", 6});
    EXPECT_EQ(contentOf(table), expected);
    table.Release();
}

TEST_F(IndexFile, TableLooksTheVariableUp) {
    variable.set("16");
    QelTnf::Block table;
    IndexPeer::putIndexTable(table, {});
    EXPECT_EQ(QelTnf::defaultBlockSize, 16U);
    EXPECT_EQ(table.GetCapacity(), 16U);
    table.Release();
}

/// A name and the 128 bytes that represent it.
struct Name {
    const char* title;
    std::string name;
    ByteVector bytes;
};

void PrintTo(const Name& name, std::ostream* out) {
    *out << name.title;
}

class IndexName : public IndexFile, public testing::WithParamInterface<Name> {};

TEST_P(IndexName, StandsIn128Bytes) {
    put(GetParam().name, {1});
    writeAll();
    EXPECT_EQ(fileAt(25, 128), GetParam().bytes);
    EXPECT_EQ(fileAt(153, 4), (ByteVector{1, 0, 0, 0}));
}

INSTANTIATE_TEST_SUITE_P(
    Names, IndexName,
    testing::Values(Name{"Short", "a", Bytes{'a'}.zeros(127)}, Name{"Empty", "", Bytes().zeros(128)},
                    Name{"Of127BytesHasOneTerminator", std::string(127, 'a'),
                         Bytes().fill(127, 'a').zeros(1)},
                    Name{"Of128BytesHasNone", std::string(128, 'a'), Bytes().fill(128, 'a')},
                    Name{"LongerIsCut", std::string(128, 'a') + "b", Bytes().fill(128, 'a')},
                    Name{"EndsAtItsFirstZeroByte", std::string("a\0b", 3), Bytes{'a'}.zeros(127)}),
    [](const testing::TestParamInfo<Name>& name) { return name.param.title; });

// --- Whole files

TEST_F(IndexFile, FileOfTwoBlocksIsTheHeadIndexAndTheirPayloads) {
    put("one", {1, 2, 3});
    put("two", {4, 5});
    writeAll();
    Bytes expected = Bytes().zeros(12).u32(2784).u32(20);
    addRecord(expected, 1, "one", 3, 0);
    addRecord(expected, 2, "two", 2, 0);
    addFreeRecords(expected, 3, 18);
    expected.raw("\x01\x02\x03\x04\x05");
    EXPECT_EQ(file(), expected);
}

TEST_F(IndexFile, CompressedPayloadIsTheContentLengthAndOneZlibStreamOfLevel6) {
    const ByteVector content = Bytes().fill(1000, 7);
    put("Mox Tree", content);
    put("Light Data", Bytes().fill(500, 8));
    index.SetBlockFlags("Mox Tree", compressed);
    index.SetBlockFlags("Light Data", compressed);
    writeAll();
    const ByteVector bytes = file();
    const std::uint32_t first = entry(0).length;
    const std::uint32_t second = entry(1).length;
    EXPECT_EQ(Support::slice(bytes, 2800, 6), (ByteVector{0xE8, 0x03, 0, 0, 0x78, 0x9C}));
    EXPECT_EQ(Support::inflated(Support::slice(bytes, 2804, first - 4), 1000), content);
    EXPECT_EQ(Support::slice(bytes, 2800 + first, 4), (ByteVector{0xF4, 0x01, 0, 0}));
    EXPECT_EQ(bytes.size(), 2800 + first + second);
}

TEST_F(IndexFile, CompressedEmptyBlockTakes12Bytes) {
    put("a", {});
    index.SetBlockFlags("a", compressed);
    writeAll();
    EXPECT_EQ(fileAt(2800, 100), (ByteVector{0, 0, 0, 0, 0x78, 0x9C, 0x03, 0, 0, 0, 0, 0x01}));
}

TEST_F(IndexFile, BlockThatDoesNotCompressIsLongerThanItsContent) {
    put("a", {1});
    index.SetBlockFlags("a", compressed);
    writeAll();
    EXPECT_GT(entry(0).length, 5U);
}

TEST_F(IndexFile, SameNameRecursWithDifferentFlags) {
    variable.set("1");
    put("a", {1});
    index.SetBlockFlags("a", freezable);
    put("a", {2});
    index.SetBlockFlags("a", compressed);
    writeAll();
    EXPECT_EQ(fileAt(157, 1), (ByteVector{0x21}));
    EXPECT_EQ(fileAt(296, 1), (ByteVector{0x01}));
}

TEST_F(IndexFile, NineteenBlocksLeaveId19EmptyAndNothingButPayloadsAfterTheHead) {
    addOneByteBlocks(19);
    writeAll();
    Bytes expected = Bytes().zeros(12).u32(2784).u32(20);
    for (std::uint8_t number = 1; number <= 19; ++number) {
        addRecord(expected, number, "a", 1, 0);
    }
    addFreeRecords(expected, 20, 1);
    for (std::uint8_t value = 1; value <= 19; ++value) {
        expected.u8(value);
    }
    EXPECT_EQ(file(), expected);
}

TEST_F(IndexFile, TwentiethBlockStandsAfterAnIndexBlockOf27804BytesWithItsRecord) {
    addOneByteBlocks(20);
    writeAll();
    Bytes expected = Bytes().zeros(12).u32(2784).u32(20);
    for (std::uint8_t number = 1; number <= 19; ++number) {
        addRecord(expected, number, "a", 1, 0);
    }
    addRecord(expected, 20, indexName, 27804, 0x20);
    for (std::uint8_t value = 1; value <= 19; ++value) {
        expected.u8(value);
    }
    expected.u32(200);
    addRecord(expected, 21, "a", 1, 0);
    addFreeRecords(expected, 22, 199);
    expected.u8(20);
    EXPECT_EQ(file(), expected);
}

// --- Blocks whose bytes the caller has

TEST_F(IndexFile, StoredBlocksLieOneAfterTheOtherAndValuesOpenABlockAfterThem) {
    const std::uint64_t first = index.AddStoredBlock("s", 5, 1000);
    index.SetBlockFlags("s", freezable);
    const std::uint64_t second = index.AddStoredBlock("s", 7, 10);
    put("a", {1, 2});
    put("s", {3});
    EXPECT_EQ(first, 0U);
    EXPECT_EQ(second, 1U);
    EXPECT_EQ(entry(0).position, 2800U);
    EXPECT_EQ(entry(1).position, 2805U);
    EXPECT_EQ(index.GetStreamSize("s"), 1011U);
    writeAll();
    Bytes expected = Bytes().zeros(12).u32(2784).u32(20);
    addRecord(expected, 1, "s", 5, 0x21);
    addRecord(expected, 2, "s", 7, 0x01);
    addRecord(expected, 3, "a", 2, 0);
    addRecord(expected, 4, "s", 1, 0);
    addFreeRecords(expected, 5, 16);
    expected.zeros(12).raw("\x01\x02\x03");
    EXPECT_EQ(file(), expected);
}

TEST_F(IndexFile, StoredBlockKeepsTheFlagsOfTheFreeEntryThatItTakes) {
    index.AddBlock("a");
    index.WriteBufferToFileStream(0, stream);
    IndexPeer::entries(index)[0].frozen = true;
    index.SetBlockFlags(emptyName, freezable);
    const std::uint64_t id = index.AddStoredBlock("s", 5, 1000);
    EXPECT_EQ(entry(id).flags, compressed | freezable);
}

TEST_F(IndexFile, StoredBlocksAfterIndexBlocksLieWhereTheLengthsAddUpTo) {
    for (unsigned int i = 0; i < 250; ++i) {
        index.SetBlockFlags("s", freezable);
        index.AddStoredBlock("s", 10, 1);
    }
    writeAll();
    EXPECT_EQ(entry(18).position, 2980U);
    EXPECT_EQ(entry(19).position, 2990U);
    EXPECT_EQ(entry(20).position, 30794U);
    EXPECT_EQ(entry(219).position, 32784U);
    EXPECT_EQ(entry(220).position, 60588U);
    EXPECT_EQ(entry(251).position, 60898U);
    Bytes table;
    table.u32(200);
    for (unsigned int id = 20; id < 219; ++id) {
        addRecord(table, static_cast<std::uint8_t>(id + 1), "s", 10, 0x21);
    }
    addRecord(table, 220, indexName, 27804, 0x20);
    EXPECT_EQ(fileAt(2990, 27804), table);
    Bytes last;
    last.u32(200);
    for (unsigned int id = 220; id < 251; ++id) {
        addRecord(last, static_cast<std::uint8_t>(id + 1), "s", 10, 0x21);
    }
    addRecord(last, 252, "s", 10, 0x01);
    addFreeRecords(last, 253, 168);
    EXPECT_EQ(fileAt(32784, 27804), last);
}

// The stored block stays a hole of the file, which takes no room on most disks.
TEST_F(IndexFile, BlockBeyond4GiBLandsWhereTheLengthsAddUpToAndTheIndexStaysInFront) {
    index.AddStoredBlock("s", 0xFFFFFFF0, 1);
    put("a", {1, 2, 3});
    writeAll();
    std::fflush(stream);
    // 2800 + 0xFFFFFFF0
    EXPECT_EQ(entry(1).position, 4'294'970'080U);
    EXPECT_EQ(std::filesystem::file_size(path), 4'294'970'083U);
    std::ifstream written(path, std::ios::binary);
    ByteVector head(16 + 4 + 139);
    written.read(reinterpret_cast<char*>(head.data()), static_cast<std::streamsize>(head.size()));
    Bytes expected = Bytes().zeros(12).u32(2784).u32(20);
    addRecord(expected, 1, "s", 0xFFFFFFF0, compressed);
    EXPECT_EQ(head, expected);
    ByteVector last(3);
    written.seekg(4'294'970'080);
    written.read(reinterpret_cast<char*>(last.data()), 3);
    EXPECT_EQ(last, (ByteVector{1, 2, 3}));
}

TEST_F(IndexFile, StoredBlockAfterOneInMemoryIsRefused) {
    put("a", {1});
    EXPECT_TRUE(Support::throws<Qel::Exception::NotYetImplemented>(
        {20, "Not yet implemented", "Qel/Tnf/Index", "QelTnf::Index::AddStoredBlock"},
        [this] { index.AddStoredBlock("s", 5, 1000); }));
    EXPECT_EQ(index.GetStreamSize("s"), 0U);
    put("s", {2});
    writeAll();
    EXPECT_EQ(fileAt(2800, 9), (ByteVector{1, 2}));
}

TEST_F(IndexFile, SecondIndexBlockStandsAtId219AndNumbersWrapInIt) {
    addOneByteBlocks(219);
    writeAll();
    const ByteVector bytes = file();
    // 19 bytes, the first Index Block, 199 bytes, the second Index Block, one byte.
    ASSERT_EQ(bytes.size(), 58627U);
    EXPECT_EQ(entry(219).position, 30822U);
    EXPECT_EQ(bytes[58626], 219);
    Bytes table;
    table.u32(200);
    addRecord(table, 221, "a", 1, 0);
    addFreeRecords(table, 222, 199);
    EXPECT_EQ(Support::slice(bytes, 30822, 27804), table);
    // The 36th record of the second Index Block belongs to id 255.
    EXPECT_EQ(bytes[30822 + 4 + 34 * 139], 255);
    EXPECT_EQ(bytes[30822 + 4 + 35 * 139], 0);
    EXPECT_EQ(bytes[30822 + 4 + 36 * 139], 1);
}

TEST_F(IndexFile, HeadRegionIsAHoleUntilTheClose) {
    variable.set("8");
    stream8(1);
    stream8(2);
    EXPECT_EQ(file(), Bytes().zeros(2800).fill(8, 1));
}

// --- Writing one block

TEST_F(IndexFile, OrdinaryBlockIsWrittenAndNotMarkedAsSuch) {
    put("a", {1, 2, 3});
    index.WriteBufferToFileStream(0, stream);
    EXPECT_EQ(fileAt(2800, 100), (ByteVector{1, 2, 3}));
    EXPECT_EQ(entry(0).position, 2800U);
    EXPECT_EQ(entry(0).length, 3U);
    EXPECT_FALSE(entry(0).frozen);
    EXPECT_EQ(entry(0).uncompressedLength, 0U);
}

TEST_F(IndexFile, WrittenBlockLosesItsBufferAndKeepsItsOtherFields) {
    put("a", {1, 2, 3});
    index.WriteBufferToFileStream(0, stream);
    EXPECT_EQ(block(0).GetData(), nullptr);
    EXPECT_EQ(block(0).GetSize(), 3U);
    EXPECT_EQ(block(0).GetPosition(), 3U);
    EXPECT_EQ(block(0).GetCapacity(), 10'485'760U);
}

TEST_F(IndexFile, BlockTakesItsWholeSizeInTheFileWhereverItsWritePositionIs) {
    put("a", {1, 2, 3});
    put("b", {4});
    IndexPeer::blocks(index)[0].SetPosition(1);
    writeAll();
    EXPECT_EQ(entry(0).length, 3U);
    EXPECT_EQ(entry(1).position, 2803U);
    EXPECT_EQ(fileAt(2800, 100), (ByteVector{1, 2, 3, 4}));
}

TEST_F(IndexFile, FrozenBlockKeepsTheLengthOfItsContentWhereverItsWritePositionWas) {
    put("a", {1, 2, 3});
    index.SetBlockFlags("a", freezable);
    IndexPeer::blocks(index)[0].SetPosition(1);
    index.WriteBufferToFileStream(0, stream);
    EXPECT_EQ(entry(0).uncompressedLength, 3U);
}

TEST_F(IndexFile, FreezableBlockIsFrozenAndKeepsTheLengthOfItsContent) {
    put("a", Bytes().fill(1000, 7));
    index.SetBlockFlags("a", compressed | freezable);
    index.WriteBufferToFileStream(0, stream);
    EXPECT_TRUE(entry(0).frozen);
    EXPECT_EQ(entry(0).uncompressedLength, 1000U);
    EXPECT_LT(entry(0).length, 100U);
}

TEST_F(IndexFile, BlockIsPlacedAfterItsPredecessorAsThatStandsThen) {
    put("a", {1});
    put("b", {2});
    index.WriteBufferToFileStream(1, stream);
    EXPECT_EQ(entry(1).position, 0U);
    index.WriteBufferToFileStream(0, stream);
    index.WriteBufferToFileStream(1, stream);
    EXPECT_EQ(entry(1).position, 2801U);
}

TEST_F(IndexFile, FreeEntryWritesNoBytes) {
    put("a", {1});
    index.WriteBufferToFileStream(0, stream);
    index.WriteBufferToFileStream(1, stream);
    EXPECT_EQ(entry(1).position, 2801U);
    EXPECT_EQ(entry(1).length, 0U);
    EXPECT_EQ(file().size(), 2801U);
}

TEST_F(IndexFile, FrozenBlockIsNotWrittenAgainAndNothingChanges) {
    put("a", {1, 2, 3});
    index.SetBlockFlags("a", freezable);
    index.WriteBufferToFileStream(0, stream);
    EXPECT_TRUE(Support::throws<Qel::Exception::InvalidObjectState>(
        alreadyFrozen, [this] { index.WriteBufferToFileStream(0, stream); }));
    EXPECT_EQ(entry(0).length, 3U);
    EXPECT_EQ(entry(0).position, 2800U);
    EXPECT_EQ(index.GetStreamSize("a"), 3U);
    put("a", {4});
    EXPECT_EQ(contentOf(block(1)), (ByteVector{4}));
}

// --- Streams that fail

class IndexWithoutFile : public IndexFile {
protected:
    IndexWithoutFile() {
        put("a", Bytes().fill(1000, 7));
        index.SetBlockFlags("a", compressed);
    }
    testing::AssertionResult savingFails(std::FILE* unseekable) {
        return Support::throws<Qel::Exception::FileWriteException>(
            savingFailed, [&] { index.WriteAllBuffersToFileStream(unseekable); });
    }
};

TEST_F(IndexWithoutFile, MissingStreamIsReported) {
    EXPECT_TRUE(savingFails(nullptr));
}

TEST_F(IndexWithoutFile, StreamThatCanNotBePositionedIsReportedAndGetsNothing) {
    if (!Support::Pipe::isAvailable()) {
        GTEST_SKIP() << "needs a pipe that refuses to be positioned";
    }
    Support::Pipe pipe;
    EXPECT_TRUE(savingFails(pipe.stream()));
    EXPECT_EQ(pipe.drain(), ByteVector());
}

TEST_F(IndexWithoutFile, EntryHasItsNewLengthAndPositionAndTheContentIsCompressedInMemory) {
    EXPECT_TRUE(savingFails(nullptr));
    EXPECT_EQ(entry(0).position, 2800U);
    EXPECT_EQ(entry(0).length, block(0).GetSize());
    EXPECT_FALSE(entry(0).frozen);
    const ByteVector content = contentOf(block(0));
    EXPECT_EQ(Support::slice(content, 0, 4), (ByteVector{0xE8, 0x03, 0, 0}));
    EXPECT_EQ(Support::inflated(Support::slice(content, 4, content.size()), 1000), Bytes().fill(1000, 7));
}

TEST_F(IndexWithoutFile, RepeatedCloseCompressesWhatIsCompressedOnceMore) {
    EXPECT_TRUE(savingFails(nullptr));
    const ByteVector once = contentOf(block(0));
    writeAll();
    EXPECT_EQ(fileAt(2800, 4), Bytes().u32(static_cast<std::uint32_t>(once.size())));
    EXPECT_EQ(Support::inflated(fileAt(2804, entry(0).length - 4), once.size()), once);
}

TEST_F(IndexWithoutFile, NamesTakeFurtherValues) {
    EXPECT_TRUE(savingFails(nullptr));
    put("b", {1});
    EXPECT_EQ(contentOf(block(1)), (ByteVector{1}));
}

TEST_F(IndexWithoutFile, FreezableBlockIsFrozenThoughItIsNotOnDiskAndLaterBlocksLeaveRoomForIt) {
    index.SetBlockFlags("a", freezable);
    EXPECT_TRUE(savingFails(nullptr));
    EXPECT_TRUE(entry(0).frozen);
    EXPECT_EQ(index.GetStreamSize("a"), 1000U);
    put("a", {9});
    index.WriteAllBuffersToFileStream(stream);
    EXPECT_EQ(entry(1).position, 2800 + entry(0).length);
    EXPECT_EQ(fileAt(2800, entry(0).length), ByteVector(entry(0).length));
    EXPECT_EQ(fileAt(entry(1).position, 100), (ByteVector{9}));
}

TEST_F(IndexFile, HeadIndexGoesWhereverAStreamStandsThatCanNotBePositioned) {
    if (!Support::Pipe::isAvailable()) {
        GTEST_SKIP() << "needs a pipe that refuses to be positioned";
    }
    put("a", {1});
    for (QelTnf::BlockInfo& info : IndexPeer::entries(index)) {
        info.frozen = true;
    }
    Support::Pipe pipe;
    index.WriteAllBuffersToFileStream(pipe.stream());
    Bytes expected = Bytes().u32(2784).u32(20);
    addRecord(expected, 1, "a", 0, 0);
    addFreeRecords(expected, 2, 19);
    EXPECT_EQ(pipe.drain(), expected);
}

TEST_F(IndexFile, IndexBlockGoesWhereverAStreamStandsThatCanNotBePositioned) {
    if (!Support::Pipe::isAvailable()) {
        GTEST_SKIP() << "needs a pipe that refuses to be positioned";
    }
    addOneByteBlocks(20);
    Support::Pipe pipe;
    index.WriteIndexBufferToFileStream(19, pipe.stream());
    Bytes expected = Bytes().u32(200);
    addRecord(expected, 21, "a", 0, 0);
    addFreeRecords(expected, 22, 199);
    EXPECT_EQ(pipe.drain(), expected);
}

TEST_F(IndexFile, FullDiskPassesUnseen) {
    if (!std::filesystem::exists("/dev/full")) {
        GTEST_SKIP() << "needs a device that is always full";
    }
    std::FILE* const full = std::fopen("/dev/full", "wb");
    std::setvbuf(full, nullptr, _IONBF, 0);
    put("a", Bytes().fill(1000, 7));
    EXPECT_NO_THROW(index.WriteAllBuffersToFileStream(full));
    EXPECT_NE(std::ferror(full), 0);
    std::fclose(full);
}

// --- Compression that fails

// The bound of 3,579,139,584 bytes wraps to 524, which is too little for zlib. An address space of 32 bits does not hold
// such a block.
#if SIZE_MAX > 0xFFFFFFFF
TEST_F(IndexFile, BlockWhoseCompressionFailsHasLengthZeroAndTheFlagAndTheFileIsComplete) {
    constexpr std::uint32_t length = 3'579'139'584;
    const std::unique_ptr<unsigned char, void (*)(void*)> content(
        static_cast<unsigned char*>(std::calloc(length, 1)), std::free);
    if (content == nullptr) {
        GTEST_SKIP() << "needs an address space of more than 4 GiB";
    }
    index.AddBlock("a");
    IndexPeer::blocks(index)[0] = Support::blockOf({content.get(), length, length, length});
    index.SetBlockFlags("a", compressed);
    put("b", {1, 2});
    EXPECT_NO_THROW(writeAll());
    Bytes expected = Bytes().zeros(12).u32(2784).u32(20);
    addRecord(expected, 1, "a", 0, compressed);
    addRecord(expected, 2, "b", 2, 0);
    addFreeRecords(expected, 3, 18);
    expected.u8(1).u8(2);
    EXPECT_EQ(file(), expected);
}
#endif

// --- Sizes of streams

TEST_F(IndexFile, StreamSizeStaysTheSameAcrossTheFlushingOfABlock) {
    variable.set("1000");
    put("a", Bytes().fill(1000, 7));
    put("a", {1, 2, 3});
    index.SetBlockFlags("a", compressed | freezable);
    EXPECT_EQ(index.GetStreamSize("a"), 1003U);
    flush();
    EXPECT_TRUE(entry(0).frozen);
    EXPECT_EQ(index.GetStreamSize("a"), 1003U);
}

TEST_F(IndexFile, StreamSizeOfTheLastBlockStaysTheSameAcrossItsFlushing) {
    variable.set("1000");
    put("a", Bytes().fill(1000, 7));
    index.SetBlockFlags("a", compressed | freezable);
    flush();
    EXPECT_TRUE(entry(0).frozen);
    EXPECT_EQ(index.GetStreamSize("a"), 1000U);
    put("a", {1});
    EXPECT_EQ(index.GetStreamSize("a"), 1001U);
}

TEST_F(IndexFile, StreamSizeCountsAnOrdinaryBlockByItsWritePositionAlsoOnceItIsCompressed) {
    variable.set("1000");
    put("a", Bytes().fill(1000, 7));
    put("a", {1});
    index.SetBlockFlags("a", compressed);
    writeAll();
    EXPECT_EQ(index.GetStreamSize("a"), std::uint64_t{entry(0).length} + entry(1).length);
}

TEST_F(IndexFile, StreamSizeDoesNotCountIndexBlocksThatOnlyTheTablesOfTheCloseFreeze) {
    variable.set("8");
    for (int dataset = 1; dataset <= 220; ++dataset) {
        stream8(static_cast<std::uint8_t>(dataset));
    }
    EXPECT_EQ(index.GetStreamSize(indexName), 55608U);
    writeAll();
    EXPECT_TRUE(entry(219).frozen);
    EXPECT_EQ(entry(219).uncompressedLength, 0U);
    EXPECT_EQ(index.GetStreamSize(indexName), 0U);
}

TEST_F(IndexFile, StreamSizeDoesNotCountContentThatWasLostForWantOfMemory) {
    if (!Support::AddressSpaceLimit::isAvailable()) {
        GTEST_SKIP() << "needs a limit to the address space";
    }
    index.AddBlock("a");
    auto* const content = static_cast<unsigned char*>(std::malloc(16));
    IndexPeer::blocks(index)[0] = Support::blockOf({content, 3'000'000'000, 3'000'000'000, 3'000'000'000});
    index.SetBlockFlags("a", compressed);
    put("a", {1, 2, 3});
    EXPECT_EQ(index.GetStreamSize("a"), 3'000'000'003U);
    {
        const Support::AddressSpaceLimit limit;
        EXPECT_TRUE(Support::throws<Qel::Exception::MemoryAllocationException>(
            {16, "Memory allocation error", "Qel/Tnf/BlockZlibCompressor",
             "QelTnf::BlockZlibCompressor::operator()"},
            [this] { index.WriteBufferToFileStream(0, stream); }));
    }
    EXPECT_EQ(block(0).GetPosition(), 0U);
    EXPECT_EQ(index.GetStreamSize("a"), 3U);
}

// The first block of the twentieth name needs an Index Block, for whose table there is no memory at first.
TEST_F(IndexFile, NameWhoseFirstBlockFailedForWantOfMemoryGetsItWithTheNextValue) {
    if (!Support::AddressSpaceLimit::isAvailable()) {
        GTEST_SKIP() << "needs a limit to the address space";
    }
    for (char name = 'a'; name <= 's'; ++name) {
        index.AddBlock(std::string(1, name));
    }
    {
        const Support::AddressSpaceLimit limit;
        variable.set("1000000000");
        EXPECT_THROW(put("t", {7}), Qel::Exception::MemoryAllocationException);
    }
    EXPECT_EQ(index.GetStreamSize("t"), 0U);
    variable.set("8");
    put("t", {7});
    EXPECT_EQ(index.GetStreamSize("t"), 1U);
    EXPECT_EQ(entry(19).name, indexName);
    EXPECT_EQ(entry(20).name, "t");
}

// --- Flushing

TEST_F(IndexFile, FlushWritesFullFreezableBlocksInOneGo) {
    variable.set("8");
    for (std::uint8_t value = 1; value <= 3; ++value) {
        put("a", Bytes().fill(8, value));
    }
    index.SetBlockFlags("a", freezable);
    flush();
    EXPECT_EQ(fileAt(2800, 100), Bytes().fill(8, 1).fill(8, 2).fill(8, 3));
    EXPECT_TRUE(entry(2).frozen);
}

TEST_F(IndexFile, FlushPassesOverAFrozenBlockAfterOneThatStaysInMemory) {
    variable.set("8");
    index.AddBlock("a");
    index.AddBlock("a");
    put("a", Bytes().fill(8, 1));
    index.SetBlockFlags("a", freezable);
    index.WriteBufferToFileStream(1, stream);
    ASSERT_TRUE(entry(1).frozen);
    EXPECT_NO_THROW(flush());
    EXPECT_FALSE(entry(0).frozen);
}

TEST_F(IndexFile, FlushLeavesBlocksThatAreNotFreezable) {
    variable.set("8");
    put("a", Bytes().fill(8, 1));
    flush();
    EXPECT_FALSE(entry(0).frozen);
    EXPECT_EQ(file(), ByteVector());
}

TEST_F(IndexFile, FlushLeavesBlocksThatAreOneByteBelowTheirLimit) {
    variable.set("8");
    put("a", Bytes().fill(7, 1));
    index.SetBlockFlags("a", freezable);
    flush();
    EXPECT_FALSE(entry(0).frozen);
    EXPECT_EQ(file(), ByteVector());
}

TEST_F(IndexFile, FlushGoesByTheSizeOfABlockNotByItsWritePosition) {
    variable.set("8");
    put("a", Bytes().fill(8, 1));
    index.SetBlockFlags("a", freezable);
    IndexPeer::blocks(index)[0].SetPosition(0);
    flush();
    EXPECT_TRUE(entry(0).frozen);
    EXPECT_EQ(fileAt(2800, 100), Bytes().fill(8, 1));
}

TEST_F(IndexFile, FlushTakesTheLimitOfTheEntryNotTheVariable) {
    variable.set("8");
    put("a", Bytes().fill(8, 1));
    index.SetBlockFlags("a", freezable);
    variable.set("1000");
    flush();
    EXPECT_TRUE(entry(0).frozen);
}

TEST_F(IndexFile, FlushSkipsIndexBlocksThoughTheyAreFullAndFreezable) {
    addOneByteBlocks(20);
    EXPECT_NO_THROW(flush());
    EXPECT_FALSE(entry(19).frozen);
    EXPECT_NE(block(19).GetData(), nullptr);
    EXPECT_EQ(file(), ByteVector());
}

TEST_F(IndexFile, FlushSkipsANameThatBeginsLikeThatOfIndexBlocks) {
    variable.set("2");
    put(indexName + "2", {1, 2});
    put("z", {3, 4});
    index.SetBlockFlags(indexName + "2", freezable);
    index.SetBlockFlags("z", freezable);
    flush();
    EXPECT_FALSE(entry(0).frozen);
    EXPECT_NE(block(0).GetData(), nullptr);
    // It doesn't stop the block after it, whose length can't be known yet.
    EXPECT_TRUE(entry(1).frozen);
    EXPECT_EQ(entry(1).position, 0U);
    EXPECT_EQ(file(), (ByteVector{3, 4}));
}

TEST_F(IndexFile, WritingOfAllPassesAFirstBlockWhoseNameBeginsLikeThatOfIndexBlocks) {
    put(indexName + "2", {1, 2});
    put("a", {3});
    writeAll();
    EXPECT_NE(block(0).GetData(), nullptr);
    EXPECT_EQ(entry(0).position, 0U);
    EXPECT_EQ(entry(0).length, 0U);
    EXPECT_EQ(block(1).GetData(), nullptr);
}

TEST_F(IndexFile, FlushSkipsFreeEntriesThoughTheyAreFullAndFreezable) {
    variable.set("0");
    put("a", {1});
    index.SetBlockFlags(emptyName, freezable);
    flush();
    EXPECT_FALSE(entry(1).frozen);
}

TEST_F(IndexFile, FlushPassesAnIndexBlockThatIsStillInMemory) {
    variable.set("4");
    for (std::uint8_t value = 1; value <= 21; ++value) {
        index.SetBlockFlags("s", freezable);
        put("s", Bytes().fill(4, value));
        index.SetBlockFlags("s", freezable);
        flush();
    }
    EXPECT_FALSE(entry(19).frozen);
    EXPECT_TRUE(entry(20).frozen);
    EXPECT_EQ(entry(20).position, 30680U);
    EXPECT_EQ(fileAt(30680, 4), (ByteVector{20, 20, 20, 20}));
}

TEST_F(IndexFile, FlushRefusesABlockAfterAnotherNamesBlockThatIsStillInMemory) {
    variable.set("8");
    put("other", {1});
    put("a", Bytes().fill(8, 2));
    index.SetBlockFlags("a", freezable);
    EXPECT_TRUE(Support::throws<Qel::Exception::NotYetImplemented>(flushingImpossible, [this] { flush(); }));
    EXPECT_FALSE(entry(1).frozen);
    EXPECT_EQ(file(), ByteVector());
}

TEST_F(IndexFile, FlushRefusesABlockAfterOneInMemoryThatStandsAfterFlushedOnes) {
    variable.set("8");
    stream8(1);
    stream8(2);
    put("other", {3});
    put("s", Bytes().fill(8, 4));
    index.SetBlockFlags("s", freezable);
    ASSERT_TRUE(entry(0).frozen);
    EXPECT_TRUE(Support::throws<Qel::Exception::NotYetImplemented>(flushingImpossible, [this] { flush(); }));
    EXPECT_FALSE(entry(3).frozen);
}

TEST_F(IndexFile, CloseCompletesTheFileAfterARefusedFlush) {
    variable.set("8");
    put("other", {1});
    put("a", Bytes().fill(8, 2));
    index.SetBlockFlags("a", freezable);
    EXPECT_TRUE(Support::throws<Qel::Exception::NotYetImplemented>(flushingImpossible, [this] { flush(); }));
    put("a", {3});
    writeAll();
    EXPECT_EQ(fileAt(2800, 100), Bytes{1}.fill(8, 2).u8(3));
}

TEST_F(IndexFile, FlushGoesByTheOrderOfNamesAndRefusesWhatStandsAfterALaterName) {
    variable.set("8");
    put("b", Bytes().fill(8, 1));
    put("a", Bytes().fill(8, 2));
    index.SetBlockFlags("a", freezable);
    index.SetBlockFlags("b", freezable);
    EXPECT_TRUE(Support::throws<Qel::Exception::NotYetImplemented>(flushingImpossible, [this] { flush(); }));
    EXPECT_FALSE(entry(0).frozen);
}

TEST_F(IndexFile, FlushWritesSeveralNamesWhoseIdsFollowTheirOrder) {
    variable.set("8");
    put("a", Bytes().fill(8, 1));
    put("b", Bytes().fill(8, 2));
    index.SetBlockFlags("a", freezable);
    index.SetBlockFlags("b", freezable);
    flush();
    EXPECT_EQ(fileAt(2800, 100), Bytes().fill(8, 1).fill(8, 2));
}

TEST_F(IndexFile, FlushPassesOnThatTheStreamCanNotBePositioned) {
    variable.set("8");
    put("a", Bytes().fill(8, 1));
    index.SetBlockFlags("a", freezable);
    EXPECT_TRUE(Support::throws<Qel::Exception::FileWriteException>(savingFailed,
                                                                    [this] { index.FlushFrozen(nullptr); }));
    EXPECT_TRUE(entry(0).frozen);
    put("a", {2});
    EXPECT_NO_THROW(flush());
    EXPECT_EQ(index.GetStreamSize("a"), 9U);
}

// --- Index Blocks on their way out

TEST_F(IndexFile, IndexBlockGoesOutLikeAnyOtherWithTheImageOfItsCreation) {
    addOneByteBlocks(20);
    for (std::uint64_t id = 0; id < 20; ++id) {
        index.WriteBufferToFileStream(id, stream);
    }
    EXPECT_TRUE(entry(19).frozen);
    EXPECT_FALSE(entry(19).released);
    EXPECT_EQ(entry(19).uncompressedLength, 27804U);
    Bytes table = Bytes().u32(200);
    addFreeRecords(table, 21, 200);
    EXPECT_EQ(fileAt(2819, 30000), table);
}

TEST_F(IndexFile, IndexBlockThatIsFrozenGetsANewBufferOnceAndStaysFrozen) {
    addOneByteBlocks(20);
    writeAll();
    EXPECT_TRUE(entry(19).frozen);
    EXPECT_TRUE(entry(19).released);
    EXPECT_EQ(entry(19).length, 27804U);
    EXPECT_EQ(entry(19).position, 2819U);
    EXPECT_EQ(block(19).GetSize(), 27804U);
    EXPECT_NE(block(19).GetData(), nullptr);
    const ByteVector first = file();
    index.WriteIndexBufferToFileStream(19, stream);
    EXPECT_EQ(file(), first);
    EXPECT_EQ(block(19).GetSize(), 27804U);
    EXPECT_TRUE(entry(19).frozen);
}

// The table takes 27,804 bytes.
TEST_F(IndexFile, NewBufferOfAFrozenIndexBlockIsNotAsLargeAsTheFormerAndIsKept) {
    addOneByteBlocks(20);
    variable.set("20000");
    writeAll();
    EXPECT_EQ(block(19).GetCapacity(), 40'000U);
    variable.set("30000");
    index.WriteIndexBufferToFileStream(19, stream);
    EXPECT_EQ(block(19).GetCapacity(), 40'000U);
}

TEST_F(IndexFile, IndexBlockThatIsNotFreezableStaysFrozenOrNotAsItWas) {
    for (const bool frozen : {false, true}) {
        QelTnf::Index other;
        for (int i = 0; i < 20; ++i) {
            other.AddBlock("a");
        }
        IndexPeer::entries(other)[19].flags = 0;
        IndexPeer::entries(other)[19].frozen = frozen;
        other.WriteIndexBufferToFileStream(19, stream);
        EXPECT_EQ(other.GetBlockInfos()[19].frozen, frozen);
        EXPECT_EQ(other.GetBlockInfos()[19].released, frozen);
        IndexPeer::entries(other)[19].frozen = false;
        other.WriteIndexBufferToFileStream(19, stream);
        EXPECT_FALSE(other.GetBlockInfos()[19].frozen);
    }
}

TEST_F(IndexFile, IndexBlockBeforeTheFirstUnwrittenBlockIsWrittenOnceOnly) {
    variable.set("8");
    for (std::uint8_t value = 1; value <= 21; ++value) {
        stream8(value);
    }
    EXPECT_FALSE(entry(19).frozen);
    const Support::RecordedLog log;
    writeAll();
    EXPECT_TRUE(entry(19).frozen);
    EXPECT_FALSE(entry(19).released);
    const std::vector<std::string> texts = log.texts();
    EXPECT_EQ(std::ranges::count(texts, "Writing index buffer 19 to stream."), 1);
    EXPECT_EQ(std::ranges::count(texts, "Writing buffer 19 to stream."), 0);
}

TEST_F(IndexFile, CloseDoesNotWriteFrozenBlocksAgain) {
    variable.set("8");
    stream8(1);
    stream8(2);
    std::fseek(stream, 2800, SEEK_SET);
    std::fputs("untouched", stream);
    writeAll();
    EXPECT_EQ(fileAt(2800, 100), Bytes().raw("untouche").fill(8, 2));
}

// --- Closing more than once

TEST_F(IndexFile, SecondCloseWritesTheSameTablesAndNoContent) {
    put("a", {1, 2, 3});
    writeAll();
    const ByteVector first = file();
    EXPECT_NO_THROW(writeAll());
    EXPECT_EQ(file(), first);
}

TEST_F(IndexFile, SecondCloseRefusesTheFrozenIndexBlockAndTheFileStays) {
    addOneByteBlocks(20);
    writeAll();
    const ByteVector first = file();
    EXPECT_TRUE(Support::throws<Qel::Exception::InvalidObjectState>(alreadyFrozen, [this] { writeAll(); }));
    EXPECT_EQ(file(), first);
}

TEST_F(IndexFile, SecondCloseOfCompressedBlocksTouchesNoFreedMemory) {
    put("a", Bytes().fill(1000, 7));
    index.SetBlockFlags("a", compressed);
    writeAll();
    const ByteVector first = file();
    EXPECT_NO_THROW(writeAll());
    EXPECT_EQ(block(0).GetData(), nullptr);
    // There is nothing to compress again: the length stays as it was.
    EXPECT_EQ(file(), first);
}

TEST_F(IndexFile, CloseThatFailsHalfwayFailsAgainAtTheFirstFrozenBlock) {
    addOneByteBlocks(21);
    IndexPeer::entries(index)[21].frozen = true;
    EXPECT_TRUE(Support::throws<Qel::Exception::InvalidObjectState>(alreadyFrozen, [this] { writeAll(); }));
    EXPECT_TRUE(entry(19).frozen);
    IndexPeer::entries(index)[21].frozen = false;
    EXPECT_TRUE(Support::throws<Qel::Exception::InvalidObjectState>(alreadyFrozen, [this] { writeAll(); }));
    EXPECT_NE(block(21).GetData(), nullptr);
}

TEST_F(IndexFile, ValueForAWrittenBlockGoesInWithoutTouchingFreedMemory) {
    put("a", {1, 2, 3});
    writeAll();
    put("a", {4});
    EXPECT_EQ(index.GetStreamSize("a"), 4U);
    EXPECT_EQ(Support::slice(contentOf(block(0)), 3, 1), (ByteVector{4}));
}

// --- The misplacement after an Index Block

TEST_F(IndexFile, IndexBlockAfterFlushedBlocksIsPlacedRightAtItsCreation) {
    variable.set("8");
    for (std::uint8_t value = 1; value <= 38; ++value) {
        index.SetBlockFlags("s", freezable);
        put("s", Bytes().fill(4, value));
        flush();
    }
    EXPECT_TRUE(entry(18).frozen);
    put("s", {39});
    EXPECT_EQ(entry(19).position, 2952U);
    EXPECT_EQ(contentOf(block(20)), (ByteVector{39}));
}

// Each dataset fills a block by itself, so block 18 gets its flag with the dataset that already needs id 20.
TEST_F(IndexFile, IndexBlockAfterAnUnflushedBlockGetsAPlaceFromZeros) {
    variable.set("8");
    for (std::uint8_t value = 1; value <= 20; ++value) {
        stream8(value);
    }
    EXPECT_EQ(entry(19).position, 0U);
    EXPECT_EQ(entry(18).position, 2944U);
    EXPECT_EQ(fileAt(2944, 100), Bytes().fill(8, 19));
}

TEST_F(IndexFile, BlocksAfterTheMisplacedIndexBlockLandTooLowBeforeTheClose) {
    variable.set("8");
    for (std::uint8_t value = 1; value <= 22; ++value) {
        stream8(value);
    }
    EXPECT_EQ(entry(20).position, 27804U);
    EXPECT_EQ(entry(21).position, 27812U);
    EXPECT_EQ(fileAt(27804, 100), Bytes().fill(8, 20).fill(8, 21));
}

TEST_F(IndexFile, CloseSetsTheIndexBlockRightAndWritesItOverTheBlocksThatLandedTooLow) {
    variable.set("8");
    for (std::uint8_t value = 1; value <= 22; ++value) {
        stream8(value);
    }
    writeAll();
    Bytes expected = Bytes().zeros(12).u32(2784).u32(20);
    for (std::uint8_t number = 1; number <= 19; ++number) {
        addRecord(expected, number, "s", 8, 0x20);
    }
    addRecord(expected, 20, indexName, 27804, 0x20);
    for (std::uint8_t value = 1; value <= 19; ++value) {
        expected.fill(8, value);
    }
    expected.u32(200);
    addRecord(expected, 21, "s", 8, 0x20);
    addRecord(expected, 22, "s", 8, 0x20);
    addRecord(expected, 23, "s", 8, 0x00);
    addFreeRecords(expected, 24, 197);
    EXPECT_EQ(entry(19).position, 2952U);
    EXPECT_EQ(entry(20).position, 27804U);
    EXPECT_EQ(file(), expected);
}

TEST_F(IndexFile, MisplacementComesBackAtId219) {
    variable.set("8");
    for (int dataset = 1; dataset <= 220; ++dataset) {
        stream8(static_cast<std::uint8_t>(dataset));
    }
    EXPECT_EQ(entry(219).position, 0U);
    EXPECT_EQ(entry(220).position, 27804U);
}

} // namespace
