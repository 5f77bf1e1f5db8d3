#include "../ImportRun.h"
#include "Support/TemporaryFolder.h"

#include <gtest/gtest.h>

TEST(ImportWithoutCgns, SaysInOneLineWhatIsMissing) {
    const Support::TemporaryFolder folder;
    const auto input = folder.write("model", "\x89HDF\r\n\x1A\n CGNSLibraryVersion");
    const auto run = runImport({input, folder.path("out.mox")});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(run.messages, "mox import: " + input +
                                ": can't be read: this mox was built without the CGNS library (cgnslib.h, "
                                "libcgns, on Debian libcgns-dev and libhdf5-dev)\n");
    EXPECT_EQ(folder.files(), std::vector<std::string>{"model"});
}
