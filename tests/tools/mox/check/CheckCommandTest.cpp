#include "../common/MoxRun.h"
#include "SampleFiles.h"
#include "Support/EnvironmentGuard.h"
#include "Support/TemporaryFolder.h"

#include <Qel/Mox2/Model.h>

#include <nlohmann/json.hpp>

#include <algorithm>
#include <regex>

namespace {

namespace Mox = Qel::Mox2;

class CheckCommand : public testing::Test {
protected:
    std::string write(const std::string& name, const std::vector<std::uint8_t>& bytes) const {
        return folder.write(name, {bytes.begin(), bytes.end()});
    }

    // A cube of two geometries with some arrays of four numbers each.
    std::string saveModel(unsigned arrays) const {
        Mox::Model model;
        const auto path = folder.path("model.mox");
        model.saveTo(path, {.overwrite = true});
        model.addNode(Mox::RootGroup, "root");
        const auto ids = model.addAssemblyComponents(std::vector<std::string>{"/root/a", "/root/b"});
        for (unsigned i = 0; i < arrays; ++i) {
            model.addArrayProperty("N" + std::to_string(i), Mox::NodeScalar, Mox::Array1d<float>{1, 2, 3, 4},
                                   ids, Mox::Step{});
        }
        model.close();
        return path;
    }

    static bool hasRow(const MoxRun& run, const std::string& pattern) {
        return std::regex_search(run.output, std::regex("(^|\n)[^\n]*" + pattern + "(\n|$)"));
    }

    Support::TemporaryFolder folder;
    std::string sound = write("sound.mox", soundSample().file().bytes());
    std::string warned = write("warned.mox", SampleModel().file().bytes());
    std::string broken = write("broken.mox", patched(soundSample().file().bytes(), 2804, {0x79}));
};

} // namespace

TEST_F(CheckCommand, SaysThatASoundFileIsWhole) {
    const auto run = runMox({"check", sound});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.output, sound + ": whole\n");
    EXPECT_EQ(run.messages, "");
}

TEST_F(CheckCommand, EndsWith1ForWarningsAndWith2IfTheyCountAsErrors) {
    const auto run = runMox({"check", warned});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(run.output,
              warned +
                  ": warning 703 connectivity, node 3 /Root/Part, dataset 1 \"Connectivity\": it names " +
                  "place 134678021, counted from 0, of 2 coordinates\n" + warned +
                  ": whole; 0 errors, 1 warning, 0 notes\n");
    EXPECT_EQ(runMox({"check", "-W", warned}).exitCode, 2);
}

TEST_F(CheckCommand, NamesThePlaceOfAnErrorAndEndsWith2) {
    const auto run = runMox({"check", broken});
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_NE(
        run.output.find(broken + ": error 204 compressed bytes, offset 2800, block 0, \"Heavy Data\": "),
        std::string::npos)
        << run.output;
}

TEST_F(CheckCommand, ChecksTheOtherFilesIfOneCannotBeOpenedAndEndsWith3) {
    const auto missing = folder.path("missing.mox");
    const auto run = runMox({"check", missing, sound});
    EXPECT_EQ(run.exitCode, 3);
    EXPECT_TRUE(hasRow(run, "sound.mox +whole +0 +0 +0")) << run.output;
    EXPECT_EQ(run.messages.rfind("mox check: " + missing + ": ", 0), 0u) << run.messages;
}

TEST_F(CheckCommand, ShowsSeveralFilesInATableAfterTheirFindings) {
    const auto run = runMox({"check", sound, broken, warned, folder.path("missing.mox")});
    EXPECT_EQ(run.output.rfind(broken + ": error 204 ", 0), 0u) << run.output;
    EXPECT_TRUE(hasRow(run, "file +verdict +errors +warnings +notes")) << run.output;
    EXPECT_TRUE(hasRow(run, "sound.mox +whole +0 +0 +0")) << run.output;
    EXPECT_TRUE(hasRow(run, "broken.mox +errors +1 +0 +4")) << run.output;
    EXPECT_TRUE(hasRow(run, "warned.mox +warnings +0 +1 +0")) << run.output;
    EXPECT_TRUE(hasRow(run, "missing.mox +unreadable +- +- +-")) << run.output;
}

TEST_F(CheckCommand, SummaryIsTheTableAlone) {
    const auto run = runMox({"check", "--summary", broken});
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_EQ(run.output.rfind("file ", 0), 0u) << run.output;
    EXPECT_EQ(std::count(run.output.begin(), run.output.end(), '\n'), 2);
}

TEST_F(CheckCommand, QuietWritesNothing) {
    const auto run = runMox({"check", "-q", sound, warned, broken});
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_EQ(run.output + run.messages, "");
}

TEST_F(CheckCommand, SaysWhatAFileOfAnotherKindIs) {
    const auto file = folder.write("mesh.msh", "$MeshFormat\n4.1 0 8\n");
    const auto run = runMox({"check", file});
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_NE(run.output.find("error 101 signature"), std::string::npos) << run.output;
    EXPECT_EQ(run.messages, "mox check: " + file + " is a Gmsh file; mox import converts it\n");
}

TEST_F(CheckCommand, GivesItsFindingsAsJson) {
    const auto run = runMox({"check", "--json", broken, warned, folder.path("missing.mox")});
    EXPECT_EQ(run.exitCode, 3);
    const auto files = nlohmann::json::parse(run.output).at("files");
    ASSERT_EQ(files.size(), 3u);
    EXPECT_EQ(files[0].at("verdict"), "errors");
    EXPECT_EQ(files[0].at("findings").at(0).at("rule"), 204);
    EXPECT_EQ(files[0].at("findings").at(0).at("offset"), 2800);
    EXPECT_EQ(files[1].at("warnings"), 1);
    EXPECT_EQ(files[1].at("findings").at(0).at("key"), "Connectivity");
    EXPECT_EQ(files[2].at("verdict"), "unreadable");
}

TEST_F(CheckCommand, ListsItsRules) {
    const auto run = runMox({"check", "--rules"});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.output.rfind("101  error    signature", 0), 0u);
    const auto rules = nlohmann::json::parse(runMox({"check", "--rules", "--json"}).output);
    EXPECT_EQ(rules.at(0).at("rule"), 101);
    EXPECT_EQ(rules.at(0).at("meaning"), "The first eight bytes are the signature");
}

TEST_F(CheckCommand, ListsOnlySoManyFindingsOfARule) {
    auto records = sampleRecords();
    for (auto& record : records) {
        record.version = "9";
    }
    auto sample = soundSample();
    sample.tree = treeStream(records);
    const auto path = write("versions.mox", sample.file().bytes());
    const auto run = runMox({"check", "--limit", "1", path});
    EXPECT_NE(run.output.find(path + ": 3 more of rule 406; --limit 0 lists all\n"), std::string::npos)
        << run.output;
}

TEST_F(CheckCommand, NeedsAFile) {
    const auto run = runMox({"check"});
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_EQ(run.messages, "mox check: FILE is required (see mox check --help)\n");
}

TEST_F(CheckCommand, ShowsExamplesInItsHelp) {
    EXPECT_NE(runMox({"check", "--help"}).output.find("mox check -W results/*.mox"), std::string::npos);
}

TEST_F(CheckCommand, TakesWhatTheWriterMakesWithBlocksOfAnySize) {
    for (const char* size : {"1", "20", "4096"}) {
        const Support::EnvironmentGuard guard(Support::BlockSizeVariable, std::string(size));
        const auto run = runMox({"check", saveModel(12)});
        EXPECT_EQ(run.exitCode, 0) << size << ": " << run.output;
    }
    EXPECT_EQ(runMox({"check", saveModel(12)}).exitCode, 0);
}

TEST_F(CheckCommand, TakesAModelWithoutNodes) {
    Mox::Model model;
    model.saveTo(folder.path("empty.mox"), {.overwrite = true});
    model.close();
    EXPECT_EQ(runMox({"check", folder.path("empty.mox")}).exitCode, 0);
}

TEST_F(CheckCommand, TakesAnIndexBlockAfterBlocksThatAreNotFilledSingly) {
    const Support::EnvironmentGuard guard(Support::BlockSizeVariable, std::string("20"));
    const auto run = runMox({"check", saveModel(100)});
    EXPECT_EQ(run.exitCode, 0) << run.output;
}

// The known damage by arrays that fill the nineteenth block singly: the blocks after it are placed too low.
TEST_F(CheckCommand, FindsBlocksThatWereMisplacedAfterAnIndexBlock) {
    const Support::EnvironmentGuard guard(Support::BlockSizeVariable, std::string("1"));
    EXPECT_EQ(runMox({"check", saveModel(100)}).exitCode, 2);
}

// An id that is given twice makes the dataset a link to itself, so that its numbers can't be reached.
TEST_F(CheckCommand, FindsALinkToItself) {
    const auto path = folder.path("twice.mox");
    Mox::Model model;
    model.saveTo(path, {.overwrite = true});
    model.addNode(Mox::RootGroup, "root");
    const auto id = model.addNode(Mox::Shape, "part");
    model.addArrayProperty("N", Mox::NodeScalar, Mox::Array1d<float>{1, 2},
                           Mox::Array1d<unsigned int>{id, id}, Mox::Step{});
    model.close();
    const auto run = runMox({"check", path});
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_NE(run.output.find("error 610 link cycle, node 3 /root/part, dataset 0 \"N\""), std::string::npos)
        << run.output;
}

TEST_F(CheckCommand, RulesAndFilesTogetherAreWrongUsage) {
    const auto run = runMox({"check", "--rules", broken});
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_EQ(run.output, "");
    EXPECT_EQ(run.messages, "mox check: --rules lists the rules and checks no file; leave out one of the two "
                            "(see mox check --help)\n");
}
