#include "MoxReader/HeavyData.h"

#include "Support/ExpectError.h"
#include "Support/SampleModel.h"

using MoxReader::ErrorCode;
using MoxReader::File;
using MoxReader::HeavyData;
using MoxReader::Model;

namespace {

/// An opened model.
struct Opened {
    explicit Opened(const TestFile& testFile)
        : file(testFile.source()), model(readModel(file)), heavy(file, model) {}
    explicit Opened(const SampleModel& sample = {}) : Opened(sample.file()) {}

    const MoxReader::Dataset& dataset(std::size_t index) const {
        return model.node(3).geometry()->datasets[index];
    }

    File file;
    Model model;
    HeavyData heavy;
};

/// The sample with a different first dataset.
SampleModel withFirstDataset(std::uint32_t size, unsigned width, std::uint64_t position) {
    SampleModel sample;
    sample.light = patched(sample.light, 45, fullEntry("Coordinates", 0x01000001, size, width, position));
    return sample;
}

void expectNodeSetsError(ErrorCode code, std::size_t offset, const Bytes& change) {
    SampleModel sample;
    sample.heavy = patched(sample.heavy, 40 + offset, change);
    Opened opened(sample);
    expectError(code, [&] { opened.heavy.readNodeSets(*opened.model.node(4).nodeSets()); });
}

} // namespace

TEST(HeavyData, FloatsComeRowByRow) {
    Opened opened;
    EXPECT_EQ((std::vector<float>{1, 2, 3, 4, 5, 6}), opened.heavy.readFloats(opened.dataset(0)));
}

// 40 bytes of three arrays and 73 of node sets.
TEST(HeavyData, TheStreamIsThatOfTheNumbers) {
    Opened opened;
    EXPECT_EQ(113u, opened.heavy.stream().size());
    EXPECT_EQ(0u, opened.heavy.stream().blocks().front().id);
}

TEST(HeavyData, UnsignedIntegersComeRowByRow) {
    Opened opened;
    EXPECT_EQ((std::vector<std::uint32_t>{0x04030201, 0x08070605}),
              opened.heavy.readUnsigned(opened.dataset(1)));
}

TEST(HeavyData, ALinkGivesTheNumbersOfItsTarget) {
    Opened opened;
    EXPECT_EQ((std::vector<float>{0.5f, -1}), opened.heavy.readFloats(opened.dataset(3)));
}

TEST(HeavyData, BytesComeAsTheyStand) {
    Opened opened;
    EXPECT_EQ((std::vector<std::uint8_t>{1, 5, 2, 6, 3, 7, 4, 8}), opened.heavy.readBytes(opened.dataset(1)));
}

TEST(HeavyData, NumbersMayLieAcrossBlocks) {
    const SampleModel sample;
    TestFile file;
    const auto middle = sample.heavy.begin() + 30;
    file.compressed("Heavy Data", {sample.heavy.begin(), middle})
        .compressed("Heavy Data", {middle, sample.heavy.end()});
    file.compressed("Mox Tree", sample.tree).compressed("Light Data", sample.light);
    file.compressed("Attributes", sample.attributes).compressed("Resources", sample.resources);
    file.compressed("Global Information", sample.global);
    Opened opened(file);
    EXPECT_EQ((std::vector<std::uint32_t>{0x04030201, 0x08070605}),
              opened.heavy.readUnsigned(opened.dataset(1)));
}

TEST(HeavyData, AnotherElementTypeIsRefused) {
    Opened opened;
    expectError(ErrorCode::WrongElementType, [&] { opened.heavy.readUnsigned(opened.dataset(0)); });
    expectError(ErrorCode::WrongElementType, [&] { opened.heavy.readFloats(opened.dataset(1)); });
}

TEST(HeavyData, ASizeThatIsNoWholeNumberOfItemsIsRefused) {
    for (const auto& sample :
         {withFirstDataset(20, 3, 0), withFirstDataset(22, 1, 0), withFirstDataset(4, 0, 0)}) {
        Opened opened(sample);
        expectError(ErrorCode::BadDatasetSize, [&] { opened.heavy.readFloats(opened.dataset(0)); });
    }
}

TEST(HeavyData, AnEmptyDatasetGivesNothing) {
    for (const auto& sample : {withFirstDataset(0, 3, 0), withFirstDataset(0, 0, 113)}) {
        Opened opened(sample);
        EXPECT_TRUE(opened.heavy.readFloats(opened.dataset(0)).empty());
    }
}

TEST(HeavyData, NumbersPastTheEndOfTheStreamAreRefusedBeforeAnythingIsAllocated) {
    for (const auto& sample : {withFirstDataset(0xFFFFFFFC, 1, 0), withFirstDataset(4, 1, 110),
                               withFirstDataset(4, 1, 0xFFFFFFFFFFFFFFFF)}) {
        Opened opened(sample);
        const auto error = errorOf([&] { opened.heavy.readFloats(opened.dataset(0)); });
        EXPECT_EQ(ErrorCode::EndOfStream, error.code());
        EXPECT_EQ("dataset 0 of node 3", error.place().record);
    }
}

TEST(HeavyData, NodeSetsHaveNamesAndPairs) {
    Opened opened;
    const auto sets = opened.heavy.readNodeSets(*opened.model.node(4).nodeSets());
    using Pairs = std::vector<std::pair<std::uint32_t, std::uint32_t>>;
    ASSERT_EQ(2u, sets.size());
    EXPECT_EQ("ab", sets[0].name);
    EXPECT_EQ((Pairs{{1, 4}}), sets[0].members);
    EXPECT_EQ("cde", sets[1].name);
    EXPECT_EQ((Pairs{{2, 5}, {3, 6}}), sets[1].members);
}

TEST(HeavyData, NoNodeSetsAreTwoListsOfOneZero) {
    SampleModel sample;
    const Bytes payload = Bytes().u32List({0}).text("").u32List({0}).u32List({}).u32List({});
    sample.heavy = patched(sample.heavy, 40, payload);
    sample.light = patched(sample.light, 212, Bytes().u32(16).u32(0).u64(40).u32(28));
    Opened opened(sample);
    EXPECT_TRUE(opened.heavy.readNodeSets(*opened.model.node(4).nodeSets()).empty());
}

TEST(HeavyData, NodeSetsThatContradictThemselvesAreRefused) {
    expectNodeSetsError(ErrorCode::BadNodeSets, 4, Bytes().u32(1));   // first name offset
    expectNodeSetsError(ErrorCode::BadNodeSets, 8, Bytes().u32(6));   // names out of order
    expectNodeSetsError(ErrorCode::BadNodeSets, 12, Bytes().u32(4));  // end of the names
    expectNodeSetsError(ErrorCode::BadNodeSets, 37, Bytes().u32(2));  // end of the members
    expectNodeSetsError(ErrorCode::BadNodeSets, 57, Bytes().u32(2));  // count of the second values
    expectNodeSetsError(ErrorCode::BadCount, 0, Bytes().u32(100000)); // count of the name offsets
}

TEST(HeavyData, NodeSetsThatContradictTheirDescriptorAreRefused) {
    for (const Bytes& descriptor :
         {Bytes().u32(16).u32(3).u64(40).u32(73), Bytes().u32(16).u32(2).u64(40).u32(72)}) {
        SampleModel sample;
        sample.light = patched(sample.light, 212, descriptor);
        Opened opened(sample);
        expectError(ErrorCode::BadNodeSets,
                    [&] { opened.heavy.readNodeSets(*opened.model.node(4).nodeSets()); });
    }
}

// Two second values, so 69 bytes, for three first ones.
TEST(HeavyData, NodeSetsWithFewerSecondValuesThanFirstOnesAreRefused) {
    SampleModel sample;
    sample.heavy = patched(sample.heavy, 40 + 57, Bytes().u32(2));
    sample.light = patched(sample.light, 212, Bytes().u32(16).u32(2).u64(40).u32(69));
    Opened opened(sample);
    expectError(ErrorCode::BadNodeSets, [&] { opened.heavy.readNodeSets(*opened.model.node(4).nodeSets()); });
}
