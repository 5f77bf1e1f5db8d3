// What an index writes to the log.

#include <Qel/Tnf/Index.h>

#include "Qel/Support/BlockSizeGuard.h"
#include "Qel/Support/RecordedLog.h"
#include "Qel/Tnf/ContainerBytes.h"
#include "Support/Bytes.h"
#include "Support/TemporaryFolder.h"

#include <Qel/Exception/Exception.h>

#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <initializer_list>
#include <string>

namespace {

using ContainerBytes::compressed;
using ContainerBytes::freezable;
using Support::Bytes;
using Support::ByteVector;
using Support::LogLines;
using Texts = std::vector<std::string>;

LogLines joined(std::initializer_list<LogLines> parts) {
    LogLines all;
    for (const LogLines& part : parts) {
        all.insert(all.end(), part.begin(), part.end());
    }
    return all;
}

LogLines writingBuffer(const Texts& texts) {
    return Support::linesOf("Qel/Tnf/Index", "QelTnf::Index::WriteBufferToFileStream", texts);
}

LogLines writingIndexBuffer(const Texts& texts) {
    return Support::linesOf("Qel/Tnf/Index", "QelTnf::Index::WriteIndexBufferToFileStream", texts);
}

LogLines writingAll(const Texts& texts) {
    return Support::linesOf("Qel/Tnf/Index", "QelTnf::Index::WriteAllBuffersToFileStream", texts);
}

LogLines flushing(const Texts& texts) {
    return Support::linesOf("Qel/Tnf/Index", "QelTnf::Index::FlushFrozen", texts);
}

// The lines for an ordinary block of one byte, or of none.
LogLines smallBuffer(const std::string& id, const std::string& length, const std::string& position) {
    Texts texts = {"Writing buffer " + id + " to stream."};
    if (length != "0") {
        texts.push_back("Buffer length: " + length);
    }
    texts.push_back("Writing buffer at position: " + position);
    texts.push_back("Buffer " + id + " written to stream.");
    return writingBuffer(texts);
}

/// An index with values; only its writing to the file is logged.
class IndexLog : public testing::Test {
protected:
    ~IndexLog() override { std::fclose(stream); }

    void put(const std::string& name, const ByteVector& bytes) {
        index.Put(name, bytes.data(), bytes.size());
    }

    Support::TemporaryFolder folder;
    const std::string path = folder.path("file");
    std::FILE* stream = std::fopen(path.c_str(), "wb");
    Support::BlockSizeGuard variable;
    QelTnf::Index index;
    Support::RecordedLog log;
};

TEST_F(IndexLog, ValuesAndNewBlocksAreNotLogged) {
    put("a", {1, 2, 3});
    index.Put("b", 7U);
    index.SetBlockFlags("a", compressed);
    EXPECT_EQ(log.lines(), LogLines());
}

TEST_F(IndexLog, BlockIsLoggedWithItsIdItsLengthAndItsPosition) {
    put("a", {1, 2, 3});
    put("b", Bytes().fill(1234567, 4));
    index.WriteBufferToFileStream(0, stream);
    index.WriteBufferToFileStream(1, stream);
    EXPECT_EQ(
        log.lines(),
        writingBuffer({"Writing buffer 0 to stream.", "Buffer length: 3", "Writing buffer at position: 2800",
                       "Buffer 0 written to stream.", "Writing buffer 1 to stream.", "Buffer length: 1234567",
                       "Writing buffer at position: 2803", "Buffer 1 written to stream."}));
}

TEST_F(IndexLog, CompressedBlockIsLoggedWithBothLengths) {
    put("a", Bytes().fill(1000, 7));
    index.SetBlockFlags("a", compressed);
    index.WriteBufferToFileStream(0, stream);
    std::fflush(stream);
    const std::string length = std::to_string(std::filesystem::file_size(path) - 2800);
    EXPECT_EQ(log.lines(),
              writingBuffer({"Writing buffer 0 to stream.", "Buffer length: 1000",
                             "Buffer length after transformations: " + length,
                             "Writing buffer at position: 2800", "Buffer 0 written to stream."}));
}

TEST_F(IndexLog, EmptyBlockIsLoggedWithoutALengthUnlessItIsCompressed) {
    put("a", {});
    put("b", {});
    index.SetBlockFlags("b", compressed);
    index.WriteBufferToFileStream(0, stream);
    index.WriteBufferToFileStream(1, stream);
    EXPECT_EQ(log.lines(),
              writingBuffer({"Writing buffer 0 to stream.", "Writing buffer at position: 2800",
                             "Buffer 0 written to stream.", "Writing buffer 1 to stream.",
                             "Buffer length after transformations: 12", "Writing buffer at position: 2800",
                             "Buffer 1 written to stream."}));
}

TEST_F(IndexLog, FailedPositioningIsLoggedLast) {
    put("a", {1, 2, 3});
    EXPECT_THROW(index.WriteBufferToFileStream(0, nullptr), Qel::Exception::FileWriteException);
    EXPECT_EQ(log.lines(), writingBuffer({"Writing buffer 0 to stream.", "Buffer length: 3",
                                          "Writing buffer at position: 2800", "File positioning failed"}));
}

TEST_F(IndexLog, FrozenBlockIsLoggedBeforeItIsRefused) {
    put("a", {1});
    index.SetBlockFlags("a", freezable);
    index.WriteBufferToFileStream(0, stream);
    const std::size_t before = log.lines().size();
    EXPECT_THROW(index.WriteBufferToFileStream(0, stream), Qel::Exception::InvalidObjectState);
    ASSERT_EQ(log.lines().size(), before + 1);
    EXPECT_EQ(LogLines{log.lines().back()}, writingBuffer({"Writing buffer 0 to stream."}));
}

TEST_F(IndexLog, IndexBlockIsLoggedWithItsId) {
    variable.set("1");
    for (std::uint8_t value = 1; value <= 20; ++value) {
        put("a", {value});
    }
    index.WriteIndexBufferToFileStream(19, stream);
    EXPECT_EQ(log.lines(), writingIndexBuffer(
                               {"Writing index buffer 19 to stream.", "Index buffer 19 written to stream."}));
}

TEST_F(IndexLog, FlushIsLoggedAtItsStartAndItsEndWithTrailingBlanks) {
    index.FlushFrozen(stream);
    EXPECT_EQ(log.lines(), flushing({"Flushing frozen blocks ... ", "Frozen blocks flushed. "}));
}

TEST_F(IndexLog, FlushLogsTheBlocksThatItWritesInBetween) {
    variable.set("2");
    put("a", {1, 2});
    put("a", {3, 4});
    put("a", {5});
    index.SetBlockFlags("a", freezable);
    index.FlushFrozen(stream);
    EXPECT_EQ(log.lines(), joined({flushing({"Flushing frozen blocks ... "}), smallBuffer("0", "2", "2800"),
                                   smallBuffer("1", "2", "2802"), flushing({"Frozen blocks flushed. "})}));
}

TEST_F(IndexLog, FlushThatIsRefusedLogsItsStartAlone) {
    variable.set("2");
    put("other", {1});
    put("a", {1, 2});
    index.SetBlockFlags("a", freezable);
    EXPECT_THROW(index.FlushFrozen(stream), Qel::Exception::NotYetImplemented);
    EXPECT_EQ(log.lines(), flushing({"Flushing frozen blocks ... "}));
}

TEST_F(IndexLog, WritingOfAllLogsEveryEntryInOrder) {
    put("a", {1, 2, 3});
    put("b", {4});
    index.WriteAllBuffersToFileStream(stream);
    LogLines expected = joined({writingAll({"Writing all buffers to file stream ..."}),
                                smallBuffer("0", "3", "2800"), smallBuffer("1", "1", "2803")});
    for (int id = 2; id < 20; ++id) {
        expected = joined({expected, smallBuffer(std::to_string(id), "0", "2804")});
    }
    EXPECT_EQ(log.lines(), joined({expected, writingAll({"All buffers to file stream written."})}));
}

// An Index Block before the first block in memory is written once, any other twice.
TEST_F(IndexLog, WritingOfAllLogsEachIndexBlockAfterTheOthers) {
    variable.set("1");
    for (int i = 1; i <= 20; ++i) {
        put("a", {static_cast<std::uint8_t>(i)});
    }
    index.WriteAllBuffersToFileStream(stream);
    const LogLines& lines = log.lines();
    // Two lines about everything, four lines for each of 21 blocks, three for each of 199 free entries, two
    // for the table.
    ASSERT_EQ(lines.size(), 2U + 4U * 21U + 3U * 199U + 2U);
    EXPECT_EQ(LogLines(lines.begin() + 1 + 4 * 19, lines.begin() + 1 + 4 * 20),
              smallBuffer("19", "27804", "2819"));
    EXPECT_EQ(LogLines(lines.end() - 3, lines.end()),
              joined({writingIndexBuffer(
                          {"Writing index buffer 19 to stream.", "Index buffer 19 written to stream."}),
                      writingAll({"All buffers to file stream written."})}));
}

} // namespace
