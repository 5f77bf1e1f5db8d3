#include "Salvage.h"
#include "Support/NumberedArrays.h"
#include "inflatedByZlib.h"

#include <MoxReader/File.h>
#include <MoxReader/MemorySource.h>

#include <map>
#include <memory>
#include <span>

// Files in which one array filled the block before an Index Block, so that the blocks after it lie too low.

namespace {

std::vector<std::uint8_t> savedArrays(unsigned count, unsigned length) {
    const Support::TemporaryFolder folder;
    Support::saveNumberedArrays(folder.path("saved.mox"), "512", count, [=](unsigned) { return length; });
    const auto text = folder.read("saved.mox");
    return {text.begin(), text.end()};
}

} // namespace

TEST(SalvageDisplaced, AllBlocksThatNothingLiesOverAreSavedWithTheirNames) {
    const auto bytes = savedArrays(105, 150);
    const MoxReader::File file(std::make_shared<MoxReader::MemorySource>(bytes));
    const Salvage salvage(bytes);
    ASSERT_EQ(0, salvage.run.exitCode) << salvage.run.messages;
    EXPECT_EQ("it was saved with blocks too small: a single dataset filled the block before Index Block 19, "
              "and the "
              "writer then placed those after it over others; 24 blocks are lost, the rest can be read",
              salvage.index.at("state").get<std::string>());
    std::map<std::uint64_t, nlohmann::json> saved;
    for (const auto& entry : salvage.index.at("blocks")) {
        saved[entry.at("offset").get<std::uint64_t>()] = entry;
    }
    std::size_t whole = 0;
    for (const auto& block : file.blocks()) {
        if (!block.isCompressed() || block.isOverwritten) {
            continue;
        }
        ++whole;
        ASSERT_TRUE(saved.contains(block.position)) << block.id;
        const auto& entry = saved.at(block.position);
        EXPECT_EQ(block.name, entry.at("name").get<std::string>());
        const auto stream = std::span(bytes).subspan(static_cast<std::size_t>(block.position), block.length);
        EXPECT_EQ(inflatedByZlib(stream.subspan(4)), salvage.content(entry));
    }
    EXPECT_EQ(whole, saved.size());
    ASSERT_EQ(1u, salvage.lost().size());
    EXPECT_TRUE(salvage.lost().front().starts_with("24 of 105 blocks of \"Heavy Data\": "))
        << salvage.lost().front();
}

TEST(SalvageDisplaced, WithATableLostTheBlocksAreSavedAllTheSame) {
    const Salvage salvage(savedArrays(460, 200));
    ASSERT_EQ(0, salvage.run.exitCode) << salvage.run.messages;
    const auto state = salvage.index.at("state").get<std::string>();
    EXPECT_NE(state.find("an index table is among what is lost"), std::string::npos) << state;
    EXPECT_GT(salvage.index.at("blocks").size(), 200u);
}
