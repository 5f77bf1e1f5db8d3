#include "CheckedBytes.h"
#include "Support/NumberedArrays.h"
#include "Support/TemporaryFolder.h"

#include <MoxReader/FileSource.h>
#include <MoxReader/RawIndex.h>
#include <gtest/gtest.h>

#include <algorithm>

// Files in which one array filled the block before an Index Block, so that the blocks after it lie too low.

namespace {

class DisplacedCheck : public testing::Test {
protected:
    std::shared_ptr<MoxReader::FileSource> save(unsigned count, unsigned length) const {
        const auto path = folder.path("model.mox");
        Support::saveNumberedArrays(path, "512", count, [=](unsigned) { return length; });
        return std::make_shared<MoxReader::FileSource>(path);
    }

    static std::vector<std::uint8_t> bytesOf(MoxReader::Source& source) {
        std::vector<std::uint8_t> bytes(static_cast<std::size_t>(source.size()));
        source.read(0, bytes);
        return bytes;
    }

    static std::int64_t count(const MoxTool::FindingList& findings, int rule) {
        return std::ranges::count(rulesIn(findings), rule);
    }

    Support::TemporaryFolder folder;
};

} // namespace

TEST_F(DisplacedCheck, BlocksThatLieTooLowAreNamedAsThatAndTheLostOnesAreListed) {
    const auto source = save(105, 150);
    const auto index = MoxReader::scanIndex(*source);
    const auto lost = std::ranges::count_if(index.blocks, &MoxReader::BlockRecord::isOverwritten);
    ASSERT_GT(lost, 0);
    const auto findings = findingsIn(source);
    ASSERT_EQ(114, rulesIn(findings).at(0));
    const auto& first = findings.findings().front();
    EXPECT_EQ(19u, first.place.block);
    EXPECT_EQ(index.tables[1].position, first.place.offset);
    EXPECT_EQ("the blocks after this Index Block lie " + std::to_string(index.tables[1].position) +
                  " bytes too low, since a single dataset filled the block before it; they can be read "
                  "unless others "
                  "lie over them",
              first.reason);
    EXPECT_EQ(1, count(findings, 114));
    EXPECT_EQ(lost, count(findings, 208));
    EXPECT_EQ(lost, count(findings, 307)); // the datasets in them
    EXPECT_EQ(1 + 2 * static_cast<std::size_t>(lost), findings.findings().size());
}

TEST_F(DisplacedCheck, ASoundFileWithAnIndexBlockBreaksNoRule) {
    EXPECT_TRUE(findingsIn(save(120, 70)).isEmpty());
}

TEST_F(DisplacedCheck, ASoundFileThatIsCutIsCut) {
    auto bytes = bytesOf(*save(120, 70));
    bytes.resize(bytes.size() - 100);
    const auto findings = findingsIn(bytes);
    EXPECT_TRUE(breaks(findings, 106));
    EXPECT_TRUE(breaks(findings, 201));
    EXPECT_FALSE(breaks(findings, 114));
}

TEST_F(DisplacedCheck, ADisplacedFileThatIsCutTooIsCut) {
    auto bytes = bytesOf(*save(105, 150));
    bytes.resize(bytes.size() - 100);
    const auto findings = findingsIn(bytes);
    EXPECT_TRUE(breaks(findings, 106));
    EXPECT_FALSE(breaks(findings, 114));
}

TEST_F(DisplacedCheck, DamageOfABlockThatNothingLiesOverIsStillDamage) {
    const auto source = save(105, 150);
    const auto index = MoxReader::scanIndex(*source);
    auto bytes = bytesOf(*source);
    const auto& block = index.blocks[100];
    ASSERT_FALSE(block.isOverwritten);
    bytes[static_cast<std::size_t>(block.end() - 1)] ^= 1;
    const auto findings = findingsIn(bytes);
    EXPECT_EQ(1, count(findings, 114));
    EXPECT_EQ(1, count(findings, 206));
}

// The second table and the third lie at nearly the same place.
TEST_F(DisplacedCheck, ATableThatLiesOverAnotherIsNamedAsWhatItIsToo) {
    const auto findings = findingsIn(save(460, 200));
    EXPECT_TRUE(breaks(findings, 104) || breaks(findings, 105));
    EXPECT_EQ(1, count(findings, 114));
}
