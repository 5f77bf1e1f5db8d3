// An import fails if the saving library can't save its model whole.

#include "../../exodus/SmallExodusFile.h"
#include "../ImportRun.h"
#include "Support/TemporaryFolder.h"

#include "Support/EnvironmentGuard.h"

#include <gtest/gtest.h>

namespace {

using Files = std::vector<std::string>;

class CheckedImport : public testing::Test {
protected:
    // A line, with a result of thirty steps. Each dataset of its nodes has 4000 bytes.
    CheckedImport() {
        constexpr int Nodes = 1000;
        SmallExodusFile file(folder.path("model.e"), {1, Nodes, 1, 1});
        file.coordinates(std::vector<double>(Nodes, 0.5));
        file.block(1, "BAR", 1, 2, {1, 2});
        file.variables(EX_NODAL, {"t"});
        for (int step = 1; step <= 30; ++step) {
            file.time(step, step);
            file.values(step, EX_NODAL, 1, 1, std::vector<double>(Nodes, step));
        }
    }

    void expectRefused(std::vector<std::string> arguments, const std::string& reason) {
        arguments.insert(arguments.end(), {folder.path("model.e"), folder.path("out.mox")});
        const auto run = runImport(arguments);
        EXPECT_EQ(run.exitCode, 1);
        EXPECT_TRUE(run.messages.starts_with("mox import: " + folder.path("out.mox") + ": " + reason))
            << run.messages;
        EXPECT_EQ(std::count(run.messages.begin(), run.messages.end(), '\n'), 1) << run.messages;
        EXPECT_EQ(folder.files(), Files{"model.e"});
    }

    Support::TemporaryFolder folder;
};

} // namespace

// If each dataset fills a block, those after the twentieth block overwrite each other.
TEST_F(CheckedImport, DamageBySmallBlocksIsFoundByTheCheck) {
    const Support::EnvironmentGuard variable("MOXWRITER_DEFAULT_BLOCK_SIZE", "4000");
    expectRefused({"--check"}, "not written, since the check of it failed: error ");
}

TEST_F(CheckedImport, DamageBySmallBlocksIsFoundWithoutTheCheckToo) {
    const Support::EnvironmentGuard variable("MOXWRITER_DEFAULT_BLOCK_SIZE", "4000");
    expectRefused({}, "can't be written: the saved file is not whole (");
}

TEST_F(CheckedImport, SameFileIsSavedWholeInLargeBlocks) {
    EXPECT_EQ(runImport({"--check", folder.path("model.e"), folder.path("out.mox")}).exitCode, 0);
}
