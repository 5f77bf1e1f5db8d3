#include "MoxRun.h"
#include "SampleModel.h"
#include "Support/TemporaryFolder.h"

namespace {

class ReadFailure : public testing::Test {
protected:
    void SetUp() override { saveSampleModel(folder.path("whole.mox")); }

    // What is said about the first bytes of a whole file.
    std::string messageFor(std::size_t size) const {
        folder.write("cut.mox", folder.read("whole.mox").substr(0, size));
        return runMox({"tree", path}).messages;
    }

    Support::TemporaryFolder folder;
    std::string path = folder.path("cut.mox");
};

} // namespace

TEST_F(ReadFailure, EmptyFileIsCalledEmpty) {
    EXPECT_EQ(messageFor(0), "mox tree: " + path + ": is empty\n");
}

TEST_F(ReadFailure, FileThatEndsBeforeItsBlocksIsNotSentToSalvage) {
    for (const std::size_t size : {10U, 14U, 1000U, 2799U}) {
        const auto message = messageFor(size);
        EXPECT_TRUE(message.ends_with("; no block of it is left, so nothing can be saved\n")) << message;
        EXPECT_EQ(runMox({"salvage", path, folder.path("saved")}).exitCode, 1);
    }
}

TEST_F(ReadFailure, FileThatIsCutInsideABlockIsSentToSalvage) {
    const auto message = messageFor(folder.read("whole.mox").size() - 1);
    EXPECT_TRUE(message.ends_with("; mox salvage saves what is left\n")) << message;
    EXPECT_EQ(runMox({"salvage", path, folder.path("saved")}).exitCode, 0);
}
