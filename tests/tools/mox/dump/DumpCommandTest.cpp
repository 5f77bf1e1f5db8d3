#include "../check/SampleFiles.h"
#include "../common/MoxRun.h"
#include "../common/SampleModel.h"
#include "Support/TemporaryFolder.h"

#include <nlohmann/json.hpp>

namespace {

class DumpCommand : public testing::Test {
protected:
    void SetUp() override { saveSampleModel(path); }

    Support::TemporaryFolder folder;
    std::string path = folder.path("sample.mox");
};

constexpr const char* SampleDump = R"({
  "fileVersion": "1.3",
  "saves": [
    {"version":"0.1","sourceName":"Solver","sourceVersion":"2.1","formatVersion":"1.3","computer":"","user":"","comment":""}
  ],
  "resultAttributes": 0,
  "nodes": [
    {
      "id": 1,
      "parent": 0,
      "name": "Assembly",
      "type": "Group",
      "version": "0.4",
      "translation": [1.0,2.0,3.0],
      "rotation": [0.0,0.0,1.0,0.0],
      "scale": [1.0,1.0,1.0],
      "kind": 0,
      "attributes": [
        {"key":"Count","integer":7},
        {"key":"Mass","float":0.1},
        {"key":"Title","text":"a \"b\"\n"}
      ]
    },
    {
      "id": 2,
      "parent": 1,
      "name": "Cube",
      "type": "Shape",
      "version": "0.2",
      "material": {"version":"0.3","diffuse":[1.0,0.0,0.0,1.0],"specular":[0.0,0.0,0.0,1.0],"emissive":[0.0,0.0,0.0],"ambient":[0.16000001,0.16000001,0.16000001,0.2],"transparency":0.0,"shininess":0.2,"flag":1}
    },
    {
      "id": 3,
      "parent": 2,
      "name": "Cube",
      "type": "Geometry",
      "version": "0.7",
      "datasets": [
        {
          "name": "Coordinates",
          "type": "Coordinates",
          "element": "float",
          "vibration": false,
          "shape": [2,3],
          "bytes": 24,
          "attributes": [],
          "numbers": [
            [0.0,0.1,1e+20],
            ["-inf","nan",-0.0]
          ]
        },
        {
          "name": "Temperature",
          "step": "Step 1",
          "type": "NodeScalar",
          "element": "float",
          "vibration": false,
          "shape": [2,1],
          "bytes": 8,
          "attributes": [],
          "numbers": [
            20.0,
            80.0
          ]
        },
        {
          "name": "Temperature",
          "step": "Step 2",
          "type": "NodeScalar",
          "element": "float",
          "vibration": false,
          "link": {"node":3,"dataset":1}
        }
      ]
    },
    {
      "id": 4,
      "parent": 1,
      "name": "\u001b[2Jü\n",
      "type": "Group",
      "version": "0.4",
      "translation": [0.0,0.0,0.0],
      "rotation": [0.0,0.0,1.0,0.0],
      "scale": [1.0,1.0,1.0],
      "kind": 0,
      "attributes": []
    }
  ]
}
)";

} // namespace

TEST_F(DumpCommand, ShowsAllOfTheModel) {
    const auto run = runMox({"dump", "--numbers", "--no-date", path});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.messages, "");
    EXPECT_EQ(run.output, SampleDump);
}

TEST_F(DumpCommand, ParsesAsJsonAndHasTheDateUnlessToldOtherwise) {
    const auto dump = nlohmann::json::parse(runMox({"dump", path}).output);
    EXPECT_TRUE(dump["saves"][0]["date"].is_string());
    EXPECT_FALSE(
        nlohmann::json::parse(runMox({"dump", "--no-date", path}).output)["saves"][0].contains("date"));
}

TEST_F(DumpCommand, NumbersComeOnRequestAlone) {
    EXPECT_EQ(runMox({"dump", path}).output.find("numbers"), std::string::npos);
}

TEST_F(DumpCommand, SameModelSavedTwiceDumpsTheSame) {
    const auto again = folder.path("again.mox");
    saveSampleModel(again);
    EXPECT_EQ(runMox({"dump", "--numbers", "--no-date", path}).output,
              runMox({"dump", "--numbers", "--no-date", again}).output);
}

TEST_F(DumpCommand, StorageComesOnRequestAlone) {
    const auto brief = nlohmann::json::parse(runMox({"dump", path}).output);
    EXPECT_FALSE(brief.contains("blocks"));
    const auto full = nlohmann::json::parse(runMox({"dump", "--storage", path}).output);
    ASSERT_EQ(full["blocks"].size(), 6U);
    EXPECT_EQ(full["blocks"][0]["name"], "Heavy Data");
    EXPECT_EQ(full["blocks"][0]["position"], 2800);
    EXPECT_EQ(full["streams"][0]["bytes"], 32);
    EXPECT_EQ(full["nodes"][0]["children"], nlohmann::json({2, 4}));
    EXPECT_EQ(full["nodes"][2]["datasets"][1]["position"], 24);
}

TEST_F(DumpCommand, DamagedNumbersShowAsUnreadableAndAreAFailureThatNamesTheFile) {
    auto bytes = folder.read("sample.mox");
    bytes[2820] = static_cast<char>(bytes[2820] ^ 0x10);
    const auto damaged = folder.write("damaged.mox", bytes);
    const auto run = runMox({"dump", "--numbers", damaged});
    EXPECT_EQ(run.exitCode, 1);
    const auto nodes = nlohmann::json::parse(run.output)["nodes"];
    ASSERT_EQ(nodes.size(), 4U);
    for (const std::size_t holder : {0U, 1U}) {
        EXPECT_TRUE(nodes[2]["datasets"][holder]["unreadable"].is_string());
        EXPECT_FALSE(nodes[2]["datasets"][holder].contains("numbers"));
    }
    EXPECT_FALSE(nodes[2]["datasets"][2].contains("unreadable"));
    EXPECT_TRUE(run.messages.starts_with("mox dump: " + damaged + ": ")) << run.messages;
    EXPECT_TRUE(run.messages.ends_with("; mox check lists all damage\n")) << run.messages;
}

TEST_F(DumpCommand, DamagedNumbersThatAreNotAskedForAreNoFailure) {
    auto bytes = folder.read("sample.mox");
    bytes[2820] = static_cast<char>(bytes[2820] ^ 0x10);
    EXPECT_EQ(runMox({"dump", folder.write("damaged.mox", bytes)}).exitCode, 0);
}

// A block of 256 KiB of zeros, a kilobyte in the file, that many datasets claim.
TEST_F(DumpCommand, NumbersThatManyDatasetsClaimAreRefusedUnlessAskedFor) {
    constexpr unsigned Size = 1U << 18U;
    const auto save = [&](unsigned datasets) {
        std::vector<std::vector<std::uint8_t>> entries;
        for (unsigned i = 0; i < datasets; ++i) {
            entries.push_back(fullEntry("N" + std::to_string(i), 0x0100000C, Size, 1, 0));
        }
        const auto bytes = loneGeometry(entries, std::vector<std::uint8_t>(Size)).bytes();
        return folder.write("many.mox", {bytes.begin(), bytes.end()});
    };
    EXPECT_EQ(runMox({"dump", "--numbers", save(1)}).exitCode, 0);
    const auto many = save(4);
    const auto refused = runMox({"dump", "--numbers", many});
    EXPECT_EQ(refused.exitCode, 1);
    EXPECT_EQ(refused.output, "");
    EXPECT_EQ(refused.messages, "mox dump: " + many +
                                    ": its datasets claim more numbers than it holds; mox check lists all "
                                    "damage, --no-limit goes on all the same\n");
    EXPECT_EQ(runMox({"dump", many}).exitCode, 0);
    EXPECT_EQ(runMox({"dump", "--numbers", "--no-limit", many}).exitCode, 0);
}
