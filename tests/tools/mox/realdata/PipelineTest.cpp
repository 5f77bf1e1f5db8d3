// Takes files of other programs through all of mox, and compares the output, number for number, with what the
// libraries of the formats read from the files.

#include "Pipeline.h"
#include "ExodusContent.h"
#include "expectDump.h"
#include "expectExported.h"

using Json = nlohmann::json;

TEST_P(Pipeline, CheckFindsNoError) {
    const auto run = runMox({"check", "--json", model()});
    EXPECT_LE(run.exitCode, 1) << run.output << run.messages;
    const auto report = Json::parse(run.output).at("files").at(0);
    EXPECT_EQ(report.at("errors"), 0);
    for (const auto& finding : report.at("findings")) {
        EXPECT_NE(finding.at("level"), "error") << finding;
    }
}

TEST_P(Pipeline, DumpHasTheCountsOfTheFile) {
    const auto run = runMox({"dump", model()});
    ASSERT_EQ(run.exitCode, 0) << run.messages;
    expectDump(Json::parse(run.output), original);
}

TEST_P(Pipeline, ExodusFileHasEveryNumberNameAndTime) {
    if (!canReadExodus()) {
        GTEST_SKIP() << "mox was built without the Exodus library (on Debian libexodusii-dev)";
    }
    expectExported(readExodus(exported(".e")), original);
}

TEST_P(Pipeline, VtkFilesHaveEveryNumberNameAndTime) {
    compareVtk("xml");
}

TEST_P(Pipeline, VtkItselfReadsEveryNumberNameAndTime) {
    compareVtk("vtk");
}
