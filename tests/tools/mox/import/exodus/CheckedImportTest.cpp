// An import saves its model whole, whatever size of blocks the environment asks for.

#include "../../exodus/SmallExodusFile.h"
#include "../ImportRun.h"
#include "Support/TemporaryFolder.h"

#include "Support/EnvironmentGuard.h"

#include <MoxReader/File.h>

#include <gtest/gtest.h>

#include <cstdlib>

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

    Support::TemporaryFolder folder;
};

} // namespace

// If each dataset filled a block, those after the twentieth block would overwrite each other.
TEST_F(CheckedImport, BlocksThatAreTooSmallForTheDatasetsAreReplacedByLargerOnes) {
    for (const auto* size : {"0", "1", "4000", "11999"}) {
        const Support::EnvironmentGuard variable("MOXWRITER_DEFAULT_BLOCK_SIZE", size);
        const auto run = runImport({"--check", "-f", folder.path("model.e"), folder.path("out.mox")});
        EXPECT_EQ(run.exitCode, 0) << size << run.messages;
        EXPECT_FALSE(MoxReader::File(folder.path("out.mox")).index().isDisplaced());
        EXPECT_STREQ(std::getenv("MOXWRITER_DEFAULT_BLOCK_SIZE"), size);
    }
}

TEST_F(CheckedImport, SameFileIsSavedWholeInLargeBlocks) {
    EXPECT_EQ(runImport({"--check", folder.path("model.e"), folder.path("out.mox")}).exitCode, 0);
}
