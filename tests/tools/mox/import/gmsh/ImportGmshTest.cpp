#include "../ImportedModel.h"
#include "import/Compressor.h"

#include <gmsh.h>

#include <bit>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <map>
#include <set>

namespace {

const std::string RealFile = std::string(MOXWRITER_DATA_DIR) + "/horn.msh";

std::string contentOf(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

std::string replaced(std::string text, const std::string& old, const std::string& with) {
    const auto place = text.find(old);
    if (place == std::string::npos) {
        throw std::runtime_error("nothing to replace");
    }
    return text.replace(place, old.size(), with);
}

// A square of two triangles and a quadrilateral, with a line and a point, all except the point in physical
// groups; results on nodes and on elements.
const std::string Plate = R"($MeshFormat
2.2 0 8
$EndMeshFormat
$PhysicalNames
2
1 7 "edge"
2 8 "plate"
$EndPhysicalNames
$Nodes
6
10 0 0 0
20 1 0 0
30 1 1 0
40 0 1 0.5
50 2 0 0
60 2 1 0
$EndNodes
$Elements
5
1 15 2 0 1 10
2 1 2 7 1 10 20
3 2 2 8 1 10 20 30
4 2 2 8 2 10 30 40
5 3 2 8 2 20 50 60 30
$EndElements
)";

const std::string Results = R"($NodeData
1
"heat"
1
0.25
3
0
1
6
10 1
20 2
30 3
40 4
50 5
60 6
$EndNodeData
$NodeData
1
"heat"
1
0.5
3
1
1
6
10 7
20 8
30 9
40 10
50 11
60 12
$EndNodeData
$NodeData
1
"disp"
1
0.5
3
1
3
2
10 1 2 3
60 4 5 6
$EndNodeData
$ElementData
1
"stress"
1
0.25
3
0
9
2
3 1 4 6 4 2 5 6 5 3
5 7 0 0 0 7 0 0 0 7
$EndElementData
)";

class ImportGmsh : public ImportedModel {
protected:
    std::string write(const std::string& content) const { return folder.write("model.msh", content); }

    // Makes the library write the mesh of a file in another form.
    std::string converted(const std::string& path, double version, bool binary) const {
        gmsh::initialize(0, nullptr, false);
        gmsh::option::setNumber("General.Terminal", 0);
        gmsh::option::setNumber("Mesh.MshFileVersion", version);
        gmsh::option::setNumber("Mesh.Binary", binary ? 1 : 0);
        gmsh::option::setNumber("Mesh.SaveAll", 1);
        gmsh::merge(path);
        gmsh::write(folder.path("converted.msh"));
        gmsh::finalize();
        return folder.path("converted.msh");
    }
};

class ImportRealGmsh : public ImportGmsh {
protected:
    void SetUp() override {
        if (!std::filesystem::exists(RealFile)) {
            GTEST_SKIP() << "there is no " << RealFile;
        }
    }

    void readThroughLibrary(const std::string& path) {
        elements.clear();
        gmsh::initialize(0, nullptr, false);
        gmsh::option::setNumber("General.Terminal", 0);
        gmsh::merge(path);
        std::vector<double> parameters;
        gmsh::model::mesh::getNodes(nodeTags, coordinates, parameters);
        std::vector<int> types;
        std::vector<std::vector<std::size_t>> tags;
        std::vector<std::vector<std::size_t>> nodes;
        gmsh::model::mesh::getElements(types, tags, nodes);
        for (std::size_t type = 0; type < types.size(); ++type) {
            const auto width = nodes[type].size() / tags[type].size();
            for (std::size_t i = 0; i < tags[type].size(); ++i) {
                elements[tags[type][i]] = {nodes[type].begin() + static_cast<std::ptrdiff_t>(width * i),
                                           nodes[type].begin() +
                                               static_cast<std::ptrdiff_t>(width * (i + 1))};
            }
        }
        gmsh::finalize();
    }

    void compare() const {
        const auto ids = integers(0, "Node Ids");
        ASSERT_EQ(ids.size(), nodeTags.size());
        const auto numbers = floats(0, "Coordinates");
        std::map<std::size_t, std::size_t> rows;
        for (std::size_t row = 0; row < ids.size(); ++row) {
            rows[ids[row]] = row;
        }
        for (std::size_t node = 0; node < nodeTags.size(); ++node) {
            for (std::size_t axis = 0; axis < 3; ++axis) {
                ASSERT_EQ(std::bit_cast<std::uint32_t>(numbers[3 * rows.at(nodeTags[node]) + axis]),
                          std::bit_cast<std::uint32_t>(static_cast<float>(coordinates[3 * node + axis])));
            }
        }
        std::set<std::uint32_t> found;
        for (std::size_t shape = 0; shape < saved->geometries().size(); ++shape) {
            ASSERT_NO_FATAL_FAILURE(compareShape(shape, ids, found));
        }
        EXPECT_EQ(found.size(), elements.size());
    }

    void compareShape(std::size_t shape, const Integers& nodeIds, std::set<std::uint32_t>& found) const {
        const auto connectivity = integers(shape, "Connectivity");
        const auto lengths = integers(shape, "Polylength");
        const auto ids = integers(shape, "Element IDs");
        ASSERT_EQ(lengths.size(), ids.size());
        std::size_t first = 0;
        for (std::size_t i = 0; i < ids.size(); ++i) {
            const auto& expected = elements.at(ids[i]);
            ASSERT_EQ(lengths[i], expected.size());
            for (std::size_t node = 0; node < expected.size(); ++node) {
                ASSERT_EQ(nodeIds.at(connectivity.at(first + node)), expected[node]);
            }
            first += expected.size();
            found.insert(ids[i]);
        }
        EXPECT_EQ(first, connectivity.size());
    }

    std::vector<std::size_t> nodeTags;
    std::vector<double> coordinates;
    std::map<std::size_t, std::vector<std::size_t>> elements; // nodes by tags
};

} // namespace

TEST_F(ImportRealGmsh, EveryNumberIsThatOfTheLibrary) {
    readThroughLibrary(RealFile);
    import(RealFile);
    EXPECT_EQ(nodeTags.size(), 10754U);
    EXPECT_EQ(elements.size(), 5366U);
    EXPECT_TRUE(run.says("shapes: 8, nodes: 10754, elements: 5366, steps: 0"));
    compare();
}

TEST_F(ImportRealGmsh, OtherFormsOfTheFileAreReadAsWell) {
    struct Form {
        double version;
        bool binary;
    };
    for (const auto form : {Form{2.2, true}, Form{4.1, false}, Form{4.1, true}}) {
        const auto path = converted(RealFile, form.version, form.binary);
        readThroughLibrary(path);
        import(path);
        EXPECT_EQ(elements.size(), 5366U);
        ASSERT_NO_FATAL_FAILURE(compare()) << form.version;
        saved.reset();
        std::filesystem::remove(output());
    }
}

TEST_F(ImportRealGmsh, ShapesAreThePhysicalGroups) {
    import(RealFile);
    EXPECT_EQ(root().name, "horn");
    EXPECT_EQ(namesBelow(root()), (Names{"Physical Curve 2", "Physical Curve 1", "Physical Surface 1",
                                         "Physical Surface 2", "Physical Surface 3", "Physical Surface 4",
                                         "Physical Surface 5", "Physical Surface 6"}));
    EXPECT_EQ(integers(0, "Polylength"), Integers(122, 3));
    EXPECT_EQ(dataset(0, "Connectivity").variableType, 4U);
    EXPECT_EQ(integers(3, "Polylength"), Integers(3918, 6));
    EXPECT_EQ(dataset(3, "Connectivity").variableType, 5U);
    EXPECT_EQ(holder(7, "Coordinates"), holder(0, "Coordinates"));
    const auto& attributes = saved->attributes(dataset(0, "Connectivity"));
    EXPECT_EQ(textOf(attributes, "Element Type"), "Line 3");
    EXPECT_EQ(textOf(attributes, "Entities"), "5, 6, 7, 8");
}

TEST_F(ImportRealGmsh, FileCutOffAnywhereIsRefused) {
    for (const auto& path : {RealFile, converted(RealFile, 2.2, true), converted(RealFile, 4.1, true)}) {
        const auto whole = contentOf(path);
        for (const auto size :
             {whole.size() / 100, whole.size() / 3, whole.size() * 2 / 3, whole.size() - 5}) {
            expectRefused(folder.write("cut.msh", whole.substr(0, size)), "damaged: $");
        }
        std::filesystem::remove(folder.path("cut.msh"));
    }
}

TEST_F(ImportGmsh, GroupsEntitiesAndElementTypesBecomeShapes) {
    import(write(Plate));
    EXPECT_EQ(namesBelow(root()),
              (Names{"Point 1", "edge", "plate (Triangle 3)", "plate (Quadrilateral 4)"}));
    EXPECT_EQ(integers(0, "Node Ids"), (Integers{10, 20, 30, 40, 50, 60}));
    EXPECT_EQ(floats(0, "Coordinates"), (Floats{0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0.5, 2, 0, 0, 2, 1, 0}));
    EXPECT_EQ(integers(0, "Connectivity"), (Integers{0}));
    EXPECT_EQ(integers(1, "Connectivity"), (Integers{0, 1}));
    EXPECT_EQ(integers(2, "Connectivity"), (Integers{0, 1, 2, 0, 2, 3}));
    EXPECT_EQ(integers(2, "Element IDs"), (Integers{3, 4}));
    EXPECT_EQ(integers(3, "Connectivity"), (Integers{1, 4, 5, 2}));
    EXPECT_EQ(integers(3, "Polylength"), (Integers{4}));
    const std::string compressor = MoxTool::Compressor::preferred();
    EXPECT_EQ(run.messages, output() +
                                ": shapes: 4, nodes: 6, elements: 5, steps: 0, datasets: 14, compressor: " +
                                compressor + "\n");
}

TEST_F(ImportGmsh, ViewsBecomeResultsOfSteps) {
    import(write(Plate + Results));
    EXPECT_EQ(floats(0, "heat", "Step 1"), (Floats{1, 2, 3, 4, 5, 6}));
    EXPECT_EQ(floats(3, "heat", "Step 2"), (Floats{7, 8, 9, 10, 11, 12}));
    EXPECT_EQ(textOf(saved->attributes(dataset(0, "heat", "Step 2")), "Time (exact)"), "0.5");
    const auto displacement = floats(0, "Displacement", "Step 2");
    ASSERT_EQ(displacement.size(), 18U);
    EXPECT_EQ(Floats(displacement.begin(), displacement.begin() + 3), (Floats{1, 2, 3}));
    EXPECT_EQ(Floats(displacement.end() - 3, displacement.end()), (Floats{4, 5, 6}));
    EXPECT_TRUE(std::isnan(displacement[3]));
    EXPECT_TRUE(run.says("note: \"Displacement\" has no value on some nodes or elements"));
}

TEST_F(ImportGmsh, SymmetricTensorsBecomeSixValuesOnTheElementsThatHaveThem) {
    import(write(Plate + Results));
    EXPECT_FALSE(has(1, "stress", "Step 1"));
    const auto triangles = floats(2, "stress", "Step 1");
    ASSERT_EQ(triangles.size(), 12U);
    EXPECT_EQ(Floats(triangles.begin(), triangles.begin() + 6), (Floats{1, 2, 3, 4, 5, 6}));
    EXPECT_TRUE(std::isnan(triangles[6]));
    EXPECT_EQ(floats(3, "stress", "Step 1"), (Floats{7, 7, 7, 0, 0, 0}));
}

TEST_F(ImportGmsh, TensorsWithoutSymmetryKeepAllNineValues) {
    import(write(Plate + replaced(Results, "3 1 4 6 4 2 5 6 5 3", "3 1 4 6 8 2 5 6 5 3")));
    EXPECT_EQ(floats(3, "stress_yx", "Step 1"), (Floats{0}));
    EXPECT_EQ(floats(2, "stress_yx", "Step 1").front(), 8.0F);
}

TEST_F(ImportGmsh, IsRecognisedWhateverItsName) {
    import(folder.write("model.e", Plate));
    EXPECT_EQ(root().name, "model");
}

TEST_F(ImportGmsh, DamagedFilesAreRefusedBeforeTheLibraryStumbles) {
    const std::pair<std::string, std::string> damages[] = {
        {replaced(Plate, "\n6\n10 0", "\n7\n10 0"), "damaged: $Nodes: a number is missing or wrong\n"},
        {replaced(Plate, "\n6\n10 0", "\n5\n10 0"), "damaged: $Nodes: it holds more than it says\n"},
        {replaced(Plate, "\n5\n1 15", "\n4\n1 15"), "damaged: $Elements: it holds more than it says\n"},
        {replaced(Plate, "10 30 40", "10 30 61"),
         "damaged: $Elements: an element refers to node 61, which is not there\n"},
        {replaced(Plate, "60 2 1 0", "50 2 1 0"), "damaged: $Nodes: two nodes have the same number\n"},
        {replaced(Plate, "3 2 2 8", "3 777 2 8"), "damaged: $Elements: elements of the unknown type 777\n"},
        {replaced(Plate, "40 0 1", "40 x 1"), "damaged: $Nodes: a number is missing or wrong\n"},
        {replaced(Plate, "$EndElements", "$EndElement"), "damaged: $Elements: "},
        {replaced(Plate, "2.2 0 8", "9.9 0 8"), "damaged, or not as Gmsh wants it ("},
        {"$MeshFormat\n2.2 0 8\n$EndMeshFormat\n", "has no elements\n"},
    };
    for (const auto& [content, reason] : damages) {
        expectRefused(write(content), reason);
    }
}

TEST_F(ImportGmsh, FilesOnWhichTheLibraryCrashesAreRefused) {
    const std::string reason = "libgmsh crashed on this file; it is likely damaged\n";
    expectRefused(write(Plate + replaced(Results, "0.25\n3\n0\n1", "0.25\n3\n-1\n1")), reason);
    expectRefused(write("$MeshFormat\n4.1 0 8\n$EndMeshFormat\n$PhysicalNames\n1\n77777777 1 "
                        "\"a\"\n$EndPhysicalNames\n"),
                  reason);
}

TEST_F(ImportGmsh, NamesOfSectionsAreShownWithoutControlCharacters) {
    run = runImport({write(Plate + "$Odd\x1B[31m\n$EndOdd\x1B[31m\n"), output()});
    EXPECT_EQ(run.exitCode, 0) << run.messages;
    EXPECT_TRUE(run.says("not taken: sections of the file: 1 (Odd\\x1B[31m)\n")) << run.messages;
}

TEST_F(ImportGmsh, SeparatorOfKeysInTheNameOfAViewIsReplaced) {
    import(write(Plate + replaced(Results, "\"stress\"",
                                  "\"str\x1E"
                                  "ess\"")));
    EXPECT_EQ(floats(3, "str_ess", "Step 1"), (Floats{7, 7, 7, 0, 0, 0}));
}

TEST_F(ImportGmsh, GroupsViewsAndStepsAreChosen) {
    run = runImport({"--check", "--block", "plate", "--variable", "he*", "--step", "2:last",
                     write(Plate + Results), output()});
    ASSERT_EQ(run.exitCode, 0) << run.messages;
    saved = std::make_unique<ReadBack>(output());
    EXPECT_EQ(namesBelow(root()), (Names{"plate (Triangle 3)", "plate (Quadrilateral 4)"}));
    EXPECT_EQ(floats(0, "heat", "Step 2"), (Floats{7, 8, 9, 10, 11, 12}));
    EXPECT_FALSE(has(0, "heat", "Step 1"));
    EXPECT_FALSE(has(0, "Displacement", "Step 2"));
    EXPECT_TRUE(run.says("steps: 1,"));
    std::filesystem::remove(output());
    run = runImport({"--step", "@0.25", write(Plate + Results), output()});
    ASSERT_EQ(run.exitCode, 0) << run.messages;
    saved = std::make_unique<ReadBack>(output());
    EXPECT_TRUE(has(3, "heat", "Step 1"));
    EXPECT_FALSE(has(3, "heat", "Step 2"));
    std::filesystem::remove(output());
    run = runImport({"--step", "x", write(Plate + Results), output()});
    EXPECT_TRUE(run.messages.ends_with(": has no step \"x\"; its steps are: 1 @0.25, 2 @0.5\n"))
        << run.messages;
    run = runImport({"--block", "none", write(Plate), output()});
    EXPECT_TRUE(run.says("--block none: no block has this name; there are: Point 1, edge, plate\n"))
        << run.messages;
}
