#include <Qel/Tnf/TnFile.h>

#include "Qel/Support/AddressSpaceLimit.h"
#include "Qel/Support/BlockSizeGuard.h"
#include "Qel/Support/Blocks.h"
#include "Qel/Support/CapturedStream.h"
#include "Qel/Support/RecordedLog.h"
#include "Support/AddressSanitizer.h"
#include "Support/TemporaryFolder.h"
#include "Support/Thrown.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <memory>
#include <new>
#include <string>
#include <vector>

namespace {

using Support::Bytes;
using Support::ByteVector;
using Support::contentOf;
using Support::Thrown;

const Thrown fileExists = {5, "File exists.", "Qel/Tnf/TnFile", "QelTnf::TnFile::OpenFileForWriting"};
const Thrown streamInUse = {2, "File stream is already in use", "Qel/Tnf/TnFile", "QelTnf::TnFile::OpenFile"};

class TnFile : public testing::Test {
protected:
    void makeExistingFile() const { std::ofstream(path) << "former content"; }
    ByteVector onDisk() const { return Support::bytesOf(path); }

    Support::TemporaryFolder folder;
    const std::string path = folder.path("model.mox");
    Support::BlockSizeGuard variable;
    QelTnf::TnFile file;
};

const ByteVector formerContent = Bytes().raw("former content");

// --- Opening and closing

TEST_F(TnFile, IsConstructedClosedWithAnEmptyIndex) {
    EXPECT_EQ(file.GetStream(), nullptr);
    EXPECT_TRUE(file.GetIndex().GetBlockInfos().empty());
}

TEST_F(TnFile, OpensANewFile) {
    file.OpenFileForWriting(path, false);
    EXPECT_NE(file.GetStream(), nullptr);
    EXPECT_TRUE(std::filesystem::exists(path));
}

TEST_F(TnFile, OpensForWritingAlone) {
    file.OpenFileForWriting(path, false);
    std::fputs("abc", file.GetStream());
    std::rewind(file.GetStream());
    EXPECT_EQ(std::fgetc(file.GetStream()), EOF);
    EXPECT_NE(std::ferror(file.GetStream()), 0);
}

TEST_F(TnFile, ExistingFileIsUntouchedWithoutOverwriteAndAnotherCanBeOpened) {
    makeExistingFile();
    EXPECT_TRUE(Support::throws<Qel::Exception::FileOpenException>(
        fileExists, [this] { file.OpenFileForWriting(path, false); }));
    EXPECT_EQ(file.GetStream(), nullptr);
    EXPECT_EQ(onDisk(), formerContent);
    EXPECT_NO_THROW(file.OpenFileForWriting(folder.path("another.mox"), false));
}

TEST_F(TnFile, ExistingFolderCountsAsExisting) {
    EXPECT_TRUE(Support::throws<Qel::Exception::FileOpenException>(
        fileExists, [this] { file.OpenFileForWriting(folder.path(""), false); }));
}

TEST_F(TnFile, ExistingFileIsEmptiedAtOnceWithOverwrite) {
    makeExistingFile();
    file.OpenFileForWriting(path, true);
    EXPECT_EQ(onDisk(), ByteVector());
}

TEST_F(TnFile, SecondOpeningIsRefusedAndTheFirstStreamIsKept) {
    file.OpenFileForWriting(path, false);
    std::FILE* const first = file.GetStream();
    EXPECT_TRUE(Support::throws<Qel::Exception::MiscelleneousException>(
        streamInUse, [this] { file.OpenFileForWriting(folder.path("another.mox"), true); }));
    EXPECT_EQ(file.GetStream(), first);
    EXPECT_FALSE(std::filesystem::exists(folder.path("another.mox")));
    std::fputs("still open", first);
    EXPECT_EQ(onDisk(), Bytes().raw("still open"));
}

TEST_F(TnFile, SecondOpeningWithOverwriteDoesNotEmptyTheFile) {
    file.OpenFileForWriting(path, false);
    std::fputs("content", file.GetStream());
    EXPECT_TRUE(Support::throws<Qel::Exception::MiscelleneousException>(
        streamInUse, [this] { file.OpenFileForWriting(path, true); }));
    EXPECT_EQ(onDisk(), Bytes().raw("content"));
}

TEST_F(TnFile, ExistenceIsTestedBeforeTheStreamIsLookedAt) {
    file.OpenFileForWriting(path, false);
    EXPECT_TRUE(Support::throws<Qel::Exception::FileOpenException>(
        fileExists, [this] { file.OpenFileForWriting(path, false); }));
}

TEST_F(TnFile, PathThatCanNotBeOpenedIsNamedAndAnotherCanBeOpened) {
    const std::string missing = folder.path("missing") + "/model.mox";
    const std::string text = "Unable to open file \"" + missing + "\"";
    const Thrown unableToOpen = {2, text, "Qel/Tnf/TnFile", "QelTnf::TnFile::OpenFile"};
    for (const bool overwrite : {false, true}) {
        EXPECT_TRUE(Support::throws<Qel::Exception::MiscelleneousException>(
            unableToOpen, [&] { file.OpenFileForWriting(missing, overwrite); }));
        EXPECT_EQ(file.GetStream(), nullptr);
    }
    EXPECT_NO_THROW(file.OpenFileForWriting(path, false));
}

Support::LogLines closing(const std::vector<std::string>& texts) {
    return Support::linesOf("Qel/Tnf/TnFile", "QelTnf::TnFile::CloseFile", texts);
}

TEST_F(TnFile, CloseOfAClosedFileLogsItsStartAndDoesNothing) {
    const Support::RecordedLog log;
    EXPECT_NO_THROW(file.CloseFile());
    EXPECT_EQ(file.GetStream(), nullptr);
    EXPECT_EQ(log.lines(), closing({"Closing file ..."}));
}

TEST_F(TnFile, CloseOfAnOpenFileLogsItsStartAndItsEndAndOpeningNothing) {
    const Support::RecordedLog log;
    file.OpenFileForWriting(path, false);
    EXPECT_EQ(log.lines(), Support::LogLines());
    file.CloseFile();
    EXPECT_EQ(log.lines(), closing({"Closing file ...", "File closed."}));
}

/// Records at which records of the log a file is open.
class OpenAtRecords final : private Qel::Log::LogSystem {
public:
    explicit OpenAtRecords(QelTnf::TnFile& observed)
        : file_(observed), former_(Qel::Log::replaceProcessLog(*this)) {}
    ~OpenAtRecords() override { Qel::Log::replaceProcessLog(former_); }

    std::vector<bool> isOpen;

private:
    using LogSystem::operator+=;
    void operator+=(const Qel::Log::Record<char>&) override {
        isOpen.push_back(file_.GetStream() != nullptr);
    }

    QelTnf::TnFile& file_;
    LogSystem& former_;
};

TEST_F(TnFile, FileIsOpenWhenTheLogSaysThatItIsBeingClosedAndNotWhenItSaysThatItIs) {
    file.OpenFileForWriting(path, false);
    OpenAtRecords log(file);
    file.CloseFile();
    EXPECT_EQ(log.isOpen, (std::vector<bool>{true, false}));
}

TEST_F(TnFile, DestructorClosesTheFileOnce) {
    auto other = std::make_unique<QelTnf::TnFile>();
    other->OpenFileForWriting(path, false);
    const Support::RecordedLog log;
    other.reset();
    EXPECT_EQ(log.lines(), closing({"Closing file ...", "File closed."}));
}

TEST_F(TnFile, CloseTwiceIsSafe) {
    file.OpenFileForWriting(path, false);
    file.CloseFile();
    EXPECT_EQ(file.GetStream(), nullptr);
    EXPECT_NO_THROW(file.CloseFile());
    EXPECT_EQ(onDisk(), ByteVector());
}

TEST_F(TnFile, CloseWritesNothingToStandardOutput) {
    const Support::CapturedStream cout(std::cout);
    file.OpenFileForWriting(path, false);
    file.CloseFile();
    EXPECT_EQ(cout.str(), "");
}

TEST_F(TnFile, DestructorLeavesThePartialFileOnDisk) {
    auto partial = std::make_unique<QelTnf::TnFile>();
    partial->OpenFileForWriting(path, false);
    partial->GetIndex().Put("a", 7U);
    std::fputs("as far as it got", partial->GetStream());
    partial.reset();
    EXPECT_EQ(onDisk(), Bytes().raw("as far as it got"));
}

/// Records when it is closed.
class ClosingFile : public QelTnf::TnFile {
public:
    void CloseFile() override { ++closings; }

    int closings = 0;
};

TEST_F(TnFile, CloseIsVirtual) {
    ClosingFile closing;
    static_cast<QelTnf::TnFile&>(closing).CloseFile();
    EXPECT_EQ(closing.closings, 1);
}

TEST_F(TnFile, BlockFlagsGoToTheIndex) {
    file.GetIndex().AddBlock("a");
    file.SetBlockFlags("a", 0x21U);
    EXPECT_EQ(file.GetIndex().GetBlockInfos()[0].flags, 0x21);
}

// --- Datasets

/// A file that is open, and arrays for it.
class TnFileDatasets : public TnFile {
protected:
    TnFileDatasets() { file.OpenFileForWriting(path, false); }

    std::uint64_t putDataset(const std::vector<unsigned int>& values, std::uint32_t count,
                             std::uint8_t width) {
        return file.PutDataset("Heavy Data", values.data(), count, width);
    }
    std::uint64_t putZeros(std::uint32_t count) {
        return putDataset(std::vector<unsigned int>(count), count, 1);
    }
    const QelTnf::BlockInfo& entry(std::size_t id) { return file.GetIndex().GetBlockInfos()[id]; }
    const QelTnf::Block& block(std::size_t id) { return file.GetIndex().GetBlocks()[id]; }
};

TEST_F(TnFileDatasets, PayloadIsComponentByComponentInBytePlanes) {
    EXPECT_EQ(putDataset({0xA3A2A1A0, 0xB3B2B1B0, 0xC3C2C1C0, 0xD3D2D1D0}, 2, 2), 0U);
    EXPECT_EQ(contentOf(block(0)), (ByteVector{0xA0, 0xC0, 0xA1, 0xC1, 0xA2, 0xC2, 0xA3, 0xC3, //
                                               0xB0, 0xD0, 0xB1, 0xD1, 0xB2, 0xD2, 0xB3, 0xD3}));
}

TEST_F(TnFileDatasets, PayloadOfFloatsIsShuffledAlike) {
    const std::vector<float> values = {1.0F, -2.5F};
    EXPECT_EQ(file.PutDataset("Heavy Data", values.data(), 2, 1), 0U);
    // 0x3F800000 and 0xC0200000.
    EXPECT_EQ(contentOf(block(0)), (ByteVector{0, 0, 0, 0, 0x80, 0x20, 0x3F, 0xC0}));
}

TEST_F(TnFileDatasets, ArrayOfTheCallerStaysAsItWas) {
    const std::vector<unsigned int> values = {0xA3A2A1A0, 0xB3B2B1B0};
    putDataset(values, 2, 1);
    EXPECT_EQ(values, (std::vector<unsigned int>{0xA3A2A1A0, 0xB3B2B1B0}));
}

TEST_F(TnFileDatasets, PositionIsTheSizeOfTheStreamBeforeTheDataset) {
    EXPECT_EQ(putDataset(std::vector<unsigned int>(15), 5, 3), 0U);
    EXPECT_EQ(putDataset(std::vector<unsigned int>(7), 7, 1), 60U);
    EXPECT_EQ(putZeros(1), 88U);
}

TEST_F(TnFileDatasets, PositionGoesOnAcrossBlocksThatWereFlushed) {
    variable.set("8");
    EXPECT_EQ(putZeros(1000), 0U);
    EXPECT_EQ(putZeros(1000), 4000U);
    EXPECT_EQ(putZeros(1000), 8000U);
    EXPECT_TRUE(entry(1).frozen);
    EXPECT_EQ(putZeros(1), 12000U);
}

TEST_F(TnFileDatasets, EmptyDatasetHasAPositionAndMakesNoBlock) {
    EXPECT_EQ(putDataset({}, 0, 3), 0U);
    EXPECT_EQ(putDataset({}, 3, 0), 0U);
    EXPECT_TRUE(file.GetIndex().GetBlockInfos().empty());
}

TEST_F(TnFileDatasets, EmptyDatasetAfterAnotherGetsThePresentSizeAndSetsNoFlag) {
    putZeros(3);
    EXPECT_EQ(putDataset({}, 0, 1), 12U);
    EXPECT_EQ(putDataset({}, 1, 0), 12U);
    EXPECT_EQ(block(0).GetSize(), 12U);
    EXPECT_EQ(entry(0).flags, 0x00);
}

TEST_F(TnFileDatasets, CountTimesWidthWrapsIn32Bits) {
    EXPECT_EQ(putDataset({0xA3A2A1A0, 0xB3B2B1B0, 0xC3C2C1C0, 0xD3D2D1D0}, 0x40000001, 4), 0U);
    EXPECT_EQ(contentOf(block(0)), (ByteVector{0xA0, 0xA1, 0xA2, 0xA3, 0xB0, 0xB1, 0xB2, 0xB3, //
                                               0xC0, 0xC1, 0xC2, 0xC3, 0xD0, 0xD1, 0xD2, 0xD3}));
}

TEST_F(TnFileDatasets, CountTimesWidthThatWrapsToNothingOpensABlockWithoutBytes) {
    for (const char* const step : {"8", "0"}) {
        variable.set(step);
        QelTnf::TnFile other;
        EXPECT_EQ(other.PutDataset("Heavy Data", static_cast<const float*>(nullptr), 0x80000000, 2), 0U);
        EXPECT_EQ(other.GetIndex().GetBlockInfos().at(0).name, "Heavy Data");
        EXPECT_EQ(other.GetIndex().GetBlocks().at(0).GetSize(), 0U);
    }
}

// Each array is shuffled straight into the block after what is there, also where the block has to grow for it.
TEST_F(TnFileDatasets, DatasetsStandOneAfterTheOtherInAGrowingBlock) {
    variable.set("1000");
    file.GetIndex().AddBlock("Heavy Data");
    variable.set("4");
    file.GetIndex().Put("Heavy Data", static_cast<unsigned char>(0xEE));
    EXPECT_EQ(putDataset({0xA3A2A1A0, 0xB3B2B1B0}, 2, 1), 1U);
    EXPECT_EQ(putDataset({0xC3C2C1C0}, 1, 1), 9U);
    EXPECT_EQ(block(0).GetCapacity(), 16U);
    EXPECT_EQ(contentOf(block(0)),
              (ByteVector{0xEE, 0xA0, 0xB0, 0xA1, 0xB1, 0xA2, 0xB2, 0xA3, 0xB3, 0xC0, 0xC1, 0xC2, 0xC3}));
}

TEST_F(TnFileDatasets, BlockThatADatasetOpensGetsItsFlagsWithTheNextDataset) {
    variable.set("8");
    putZeros(2);
    EXPECT_EQ(entry(0).flags, 0x00);
    putZeros(2);
    EXPECT_EQ(entry(0).flags, 0x21);
    EXPECT_EQ(entry(1).flags, 0x00);
}

TEST_F(TnFileDatasets, BlockGoesOutWithTheDatasetAfterTheOneThatFilledIt) {
    variable.set("8");
    putZeros(2);
    EXPECT_FALSE(entry(0).frozen);
    EXPECT_EQ(onDisk(), ByteVector());
    putZeros(2);
    EXPECT_TRUE(entry(0).frozen);
    EXPECT_EQ(block(0).GetData(), nullptr);
    EXPECT_FALSE(entry(1).frozen);
    EXPECT_EQ(Support::slice(onDisk(), 2800, 6), (ByteVector{8, 0, 0, 0, 0x78, 0x9C}));
    EXPECT_EQ(onDisk().size(), 2800 + entry(0).length);
}

TEST_F(TnFileDatasets, DatasetThatFillsAFlaggedBlockSendsItOutAtOnce) {
    variable.set("8");
    putZeros(1);
    putZeros(1);
    EXPECT_TRUE(entry(0).frozen);
    EXPECT_EQ(entry(0).uncompressedLength, 8U);
}

TEST_F(TnFileDatasets, DatasetGoesWholeIntoOneBlock) {
    variable.set("8");
    putZeros(1);
    putZeros(1000);
    EXPECT_EQ(entry(0).uncompressedLength, 4004U);
    EXPECT_EQ(entry(1).length, 0U);
}

TEST_F(TnFileDatasets, BlockOfAnotherNameInMemoryStopsTheStreamingAndTheDatasetIsInTheStream) {
    variable.set("8");
    file.GetIndex().Put("other", 7U);
    putZeros(2);
    EXPECT_TRUE(Support::throws<Qel::Exception::NotYetImplemented>(
        {20, "Not yet implemented", "Qel/Tnf/Index", "QelTnf::Index::FlushFrozen"}, [this] { putZeros(2); }));
    EXPECT_EQ(file.GetIndex().GetStreamSize("Heavy Data"), 16U);
    file.GetIndex().Put("other", 8U);
    EXPECT_EQ(file.GetIndex().GetStreamSize("other"), 8U);
}

TEST_F(TnFile, DatasetForAFileThatIsNotOpenFailsWhenABlockHasToGoOut) {
    variable.set("8");
    const std::vector<unsigned int> values = {1, 2};
    file.PutDataset("Heavy Data", values.data(), 2, 1);
    EXPECT_TRUE(Support::throws<Qel::Exception::FileWriteException>(
        {7, "Saving the buffer failed", "Qel/Tnf/Index", "QelTnf::Index::WriteBufferToFileStream"},
        [&] { file.PutDataset("Heavy Data", values.data(), 2, 1); }));
    EXPECT_EQ(file.GetIndex().GetStreamSize("Heavy Data"), 16U);
}

TEST_F(TnFile, FullDiskPassesUnseen) {
    if (!std::filesystem::exists("/dev/full")) {
        GTEST_SKIP() << "needs a device that is always full";
    }
    variable.set("8");
    file.OpenFile("/dev/full", "wb");
    const std::vector<unsigned int> values = {1, 2};
    EXPECT_EQ(file.PutDataset("Heavy Data", values.data(), 2, 1), 0U);
    EXPECT_EQ(file.PutDataset("Heavy Data", values.data(), 2, 1), 8U);
    EXPECT_TRUE(file.GetIndex().GetBlockInfos()[0].frozen);
    EXPECT_NO_THROW(file.GetIndex().WriteAllBuffersToFileStream(file.GetStream()));
    EXPECT_NO_THROW(file.CloseFile());
}

// The address sanitizer ends the process where operator new fails.
constexpr bool operatorNewCanFail = SUPPORT_ADDRESS_SANITIZER == 0;

TEST_F(TnFileDatasets, BlockThatGetsNoMemoryHasItsFlagsAndNothingPut) {
    if (!Support::AddressSpaceLimit::isAvailable()) {
        GTEST_SKIP() << "needs a limit to the address space";
    }
    putZeros(1);
    const unsigned int value = 0;
    {
        const Support::AddressSpaceLimit limit;
        // The largest dataset that goes straight into a block: 4 bytes less than 4 GiB.
        EXPECT_TRUE(Support::throws<Qel::Exception::MemoryAllocationException>(
            {16, "Memory allocation error", "Qel/Tnf/Block", "QelTnf::Block::AllocateAdditionalMemory"},
            [&] { file.PutDataset("Heavy Data", &value, 0x3FFFFFFF, 1); }));
    }
    EXPECT_EQ(entry(0).flags, 0x21);
    EXPECT_EQ(block(0).GetSize(), 4U);
    EXPECT_EQ(putZeros(1), 4U);
}

TEST_F(TnFileDatasets, CopyOf4GiBThatGetsNoMemoryIsBadAllocWithTheFlagsSetAndNothingPut) {
    if (!Support::AddressSpaceLimit::isAvailable() || !operatorNewCanFail) {
        GTEST_SKIP() << "needs a limit to the address space and no address sanitizer";
    }
    putZeros(1);
    const unsigned int value = 0;
    {
        const Support::AddressSpaceLimit limit;
        EXPECT_THROW(file.PutDataset("Heavy Data", &value, 0x40000000, 1), std::bad_alloc);
    }
    EXPECT_EQ(entry(0).flags, 0x21);
    EXPECT_EQ(block(0).GetSize(), 4U);
    EXPECT_EQ(putZeros(1), 4U);
}

TEST_F(TnFileDatasets, BlocksAfterId19LandTooLowWhereEachDatasetFillsABlockByItself) {
    variable.set("8");
    for (int dataset = 1; dataset <= 22; ++dataset) {
        putZeros(2);
    }
    const std::uint32_t length = entry(0).length;
    EXPECT_EQ(entry(18).position, 2800 + 18 * length);
    EXPECT_EQ(entry(19).position, 0U);
    EXPECT_EQ(entry(20).position, 27804U);
    EXPECT_EQ(entry(21).position, 27804 + length);
}

} // namespace
