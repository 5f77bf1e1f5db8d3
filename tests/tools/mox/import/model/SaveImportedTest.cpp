#include "import/model/saveImported.h"

#include "../../common/Messages.h"
#include "Support/NumberedArrays.h"
#include "Support/TemporaryFolder.h"
#include "common/Failure.h"

#include <MoxReader/File.h>

#include <gtest/gtest.h>

#include <fstream>

namespace {

using MoxTool::saveImported;
using Files = std::vector<std::string>;

class SaveImported : public testing::Test {
protected:
    // A shape with numbers. The model is closed early, so that the saved file can be damaged before it is
    // read.
    void fill(Qel::Mox2::Model& model) const {
        model.addNode(Qel::Mox2::RootGroup, "model");
        const auto shape = model.addNode(Qel::Mox2::Shape, "Shape");
        model.addArrayProperty(Qel::Mox2::Coordinates, Qel::Mox2::Array2d<float>(100, 3, 0.5F), shape,
                               Qel::Mox2::Step{});
        model.close();
    }

    // The last byte of the numbers' block belongs to its checksum.
    void damageNumbers() const {
        const auto path = folder.path(folder.files().at(0));
        const MoxReader::File saved(path);
        const auto& blocks = saved.blocks();
        const auto heavy = std::find_if(blocks.begin(), blocks.end(),
                                        [](const auto& block) { return block.name == "Heavy Data"; });
        std::fstream file(path, std::ios::in | std::ios::out | std::ios::binary);
        file.seekg(static_cast<std::streamoff>(heavy->position + heavy->length - 1));
        const auto changed = static_cast<char>(file.get() ^ 1);
        file.seekp(-1, std::ios::cur);
        file.put(changed);
    }

    // The message with which an import fails whose output was damaged; empty if it succeeds.
    std::string saveDamaged(bool check) {
        try {
            saveImported({"model.e", folder.path("out.mox"), false, check}, messages.terminal(),
                         [this](MoxTool::ImportTarget& target) {
                             fill(target.model);
                             damageNumbers();
                         });
        } catch (const MoxTool::Failure& failure) {
            return failure.what();
        }
        return "";
    }

    Support::TemporaryFolder folder;
    Messages messages;
};

} // namespace

TEST_F(SaveImported, ErrorOfTheCheckLeavesNothingBehind) {
    const auto failure = saveDamaged(true);
    EXPECT_TRUE(failure.starts_with(folder.path("out.mox") +
                                    ": not written, since the check of it failed: error 206 checksum: "))
        << failure;
    EXPECT_EQ(failure.find('\n'), std::string::npos);
    EXPECT_EQ(folder.files(), Files{});
}

TEST_F(SaveImported, NumbersAreLookedAtByTheCheckAlone) {
    EXPECT_EQ(saveDamaged(false), "");
    EXPECT_EQ(folder.files(), Files{"out.mox"});
}

TEST_F(SaveImported, BlocksTooSmallForTheDatasetsAreSaidToBeThat) {
    const Support::EnvironmentGuard smallBlocks(Support::BlockSizeVariable, "512");
    for (const bool check : {false, true}) {
        try {
            saveImported({"model.e", folder.path("out.mox"), false, check}, messages.terminal(),
                         [](MoxTool::ImportTarget& target) {
                             Qel::Mox2::Model& model = target.model;
                             model.addNode(Qel::Mox2::RootGroup, "model");
                             const auto shape = model.addNode(Qel::Mox2::Shape, "Shape");
                             for (unsigned i = 0; i < 105; ++i) {
                                 const auto numbers = Support::numbersOfArray(i, 150);
                                 Qel::Mox2::Array1d<unsigned> array(numbers.size());
                                 array.copy_from(numbers.data());
                                 model.addArrayProperty("T" + std::to_string(i), Qel::Mox2::NodeScalar, array,
                                                        shape, Qel::Mox2::Step{});
                             }
                         });
            FAIL() << "nothing was wrong";
        } catch (const MoxTool::Failure& failure) {
            const std::string text = failure.what();
            EXPECT_NE(text.find("a single dataset filled the block before"), std::string::npos) << text;
            EXPECT_EQ(text.find("disk full"), std::string::npos) << text;
            EXPECT_EQ(text.find('\n'), std::string::npos);
        }
        EXPECT_EQ(folder.files(), Files{});
    }
}
