#include "../../common/Messages.h"
#include "Support/TemporaryFolder.h"
#include "common/Failure.h"
#include "import/exodus/importExodus.h"

#include <gtest/gtest.h>

TEST(ImportWithoutExodus, SaysInOneLineWhatIsMissing) {
    Support::TemporaryFolder folder;
    Messages messages;
    try {
        MoxTool::importExodus({"model.e", folder.path("out.mox")}, messages.terminal());
        FAIL() << "nothing was thrown";
    } catch (const MoxTool::Failure& failure) {
        EXPECT_EQ(std::string(failure.what()),
                  "model.e: can't be read: this mox was built without the Exodus library (exodusII.h, "
                  "libexoIIv2c, on Debian libexodusii-dev)");
    }
    EXPECT_TRUE(folder.files().empty());
}
