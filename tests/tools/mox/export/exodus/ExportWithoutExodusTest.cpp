#include "../../common/MoxRun.h"
#include "../ForeignModel.h"
#include "Support/TemporaryFolder.h"

TEST(ExportWithoutExodus, SaysInOneLineWhatIsMissing) {
    const Support::TemporaryFolder folder;
    saveForeignModel(folder.path("model.mox"));
    const auto run = runMox({"export", folder.path("model.mox"), folder.path("out.e")});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(run.messages,
              "mox export: " + folder.path("out.e") +
                  ": can't be written: this mox was built without the Exodus library (exodusII.h, "
                  "libexoIIv2c, on Debian libexodusii-dev); .vtu and .pvd can be\n");
    EXPECT_EQ(folder.files(), std::vector<std::string>{"model.mox"});
}
