#include "../ImportRun.h"
#include "Support/TemporaryFolder.h"

#include <gtest/gtest.h>

TEST(ImportWithoutGmsh, SaysInOneLineWhatIsMissing) {
    const Support::TemporaryFolder folder;
    const auto input = folder.write("model", "$MeshFormat\n2.2 0 8\n");
    const auto run = runImport({input, folder.path("out.mox")});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(run.messages, "mox import: " + input +
                                ": can't be read: this mox was built without the Gmsh library (gmsh.h, "
                                "libgmsh, on Debian libgmsh-dev)\n");
    EXPECT_EQ(folder.files(), std::vector<std::string>{"model"});
}
