#include "../common/MoxRun.h"
#include "ForeignModel.h"
#include "Support/TemporaryFolder.h"

namespace {

namespace fs = std::filesystem;

using Files = std::vector<std::string>;

class ExportCommand : public testing::Test {
protected:
    ExportCommand() { saveForeignModel(model); }

    void expectRefused(const std::vector<std::string>& arguments, const std::string& reason,
                       int exitCode = 1) {
        const auto before = folder.files();
        auto line = arguments;
        line.insert(line.begin(), "export");
        const auto run = runMox(line);
        EXPECT_EQ(run.exitCode, exitCode);
        EXPECT_EQ(run.messages, "mox export: " + reason + "\n");
        EXPECT_EQ(run.output, "");
        EXPECT_EQ(folder.files(), before);
    }

    // A line of two nodes, whose elements the test gives.
    std::string saveLine(const Qel::Mox2::Array1d<unsigned int>& nodes) const {
        namespace Mox = Qel::Mox2;
        Mox::Model lines;
        lines.saveTo(folder.path("line.mox"), {true, "", "", ""});
        lines.addNode(Mox::RootGroup, "line");
        const auto shape = lines.addNode(Mox::Shape, "Line");
        lines.addArrayProperty(Mox::Coordinates, Mox::Array2d<float>(2, 3, 0.0F), shape, Mox::Step{});
        lines.addArrayProperty(Mox::Connectivity0, nodes, shape, Mox::Step{});
        lines.addArrayProperty(Mox::Polylength0, Mox::Array1d<unsigned int>{2}, shape, Mox::Step{});
        lines.close();
        return folder.path("line.mox");
    }

    // Shapes of one array of coordinates, 16 MiB of zeros that take little room in the file. Each but the
    // first is moved, and the first has a result on its nodes in so many steps that share their numbers.
    std::string saveShared(unsigned shapes, unsigned steps) const {
        namespace Mox = Qel::Mox2;
        constexpr std::size_t Nodes = std::size_t{16} * 1024 * 1024 / 12;
        Mox::Model shared;
        shared.saveTo(folder.path("shared.mox"), {true, "", "", ""});
        const auto root = shared.addNode(Mox::RootGroup, "shared");
        Mox::Array1d<unsigned int> ids(shapes, 0U);
        for (unsigned i = 0; i < shapes; ++i) {
            shared.setCurrentNodeId(root);
            Mox::NodeProperties moved;
            moved.set(Mox::Translation, std::vector<float>{static_cast<float>(i), 0, 0});
            shared.setNodeData(shared.addNode(Mox::Group, std::to_string(i)), moved);
            ids[i] = shared.addNode(Mox::Shape, "Line");
        }
        shared.addArrayProperty(Mox::Coordinates, Mox::Array2d<float>(Nodes, 3, 0.0F), ids, Mox::Step{});
        shared.addArrayProperty(Mox::Connectivity0, Mox::Array1d<unsigned int>{0, 1}, ids, Mox::Step{});
        shared.addArrayProperty(Mox::Polylength0, Mox::Array1d<unsigned int>{2}, ids, Mox::Step{});
        Mox::StepList list(steps);
        for (unsigned i = 0; i < steps; ++i) {
            list.set(i, {std::to_string(i), {}});
        }
        if (steps > 0) {
            shared.addArrayProperty("T", Mox::NodeScalar, Mox::Array1d<float>(Nodes, 0.0F), ids[0], list);
        }
        shared.close();
        return folder.path("shared.mox");
    }

    // The refusal of work out of proportion.
    void expectTooMuch(const std::string& input, const std::string& output) {
        const auto before = folder.files();
        const auto run = runMox({"export", input, folder.path(output)});
        EXPECT_EQ(run.exitCode, 1);
        EXPECT_TRUE(run.says("would become more than 256.0 MiB of numbers, since parts or steps share them; "
                             "--no-limit goes on all the same\n"))
            << run.messages;
        EXPECT_EQ(folder.files(), before);
    }

    Support::TemporaryFolder folder;
    std::string model = folder.path("model.mox");
};

} // namespace

TEST_F(ExportCommand, HelpShowsFormatsAndExamples) {
    const auto run = runMox({"export", "--help"});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_NE(run.output.find("mox export bracket.mox bracket.pvd"), std::string::npos);
    EXPECT_NE(run.output.find(".vtu"), std::string::npos);
}

TEST_F(ExportCommand, UnknownExtensionIsWrongUsage) {
    expectRefused({model, folder.path("out.stl")},
                  folder.path("out.stl") +
                      ": the extension must be .e, .exo, .ex2, .g, .vtu or .pvd, or --format be given (see "
                      "mox export --help)",
                  2);
    EXPECT_EQ(runMox({"export", model}).exitCode, 2);
}

TEST_F(ExportCommand, MissingAndForeignInputIsRefused) {
    const auto missing = folder.path("none.mox");
    expectRefused({missing, folder.path("out.vtu")}, missing + ": there is no such file");
    const auto text = folder.write("text.mox", "no model, but a text of some length");
    const auto run = runMox({"export", text, folder.path("out.pvd")});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_TRUE(run.messages.starts_with("mox export: " + text + ": ")) << run.messages;
    EXPECT_EQ(folder.files(), (Files{"model.mox", "text.mox"}));
}

TEST_F(ExportCommand, ModelWithoutMeshIsRefused) {
    Qel::Mox2::Model empty;
    empty.saveTo(folder.path("empty.mox"), {true, "", "", ""});
    empty.addNode(Qel::Mox2::RootGroup, "nothing");
    empty.close();
    expectRefused({folder.path("empty.mox"), folder.path("out.vtu")},
                  folder.path("empty.mox") +
                      ": has no geometry with Coordinates, Connectivity and Polylength");
}

TEST_F(ExportCommand, ElementsThatContradictThemselvesAreRefused) {
    expectRefused({saveLine({0, 2}), folder.path("out.vtu")},
                  folder.path("line.mox") +
                      ": geometry \"Line\": an element refers to node 2 of 2; mox check lists all damage");
    expectRefused({saveLine({0, 1, 1}), folder.path("out.vtu")},
                  folder.path("line.mox") +
                      ": geometry \"Line\": its elements have 2 nodes by Polylength and 3 by "
                      "Connectivity; mox check lists all damage");
}

TEST_F(ExportCommand, OneFileForSeveralStepsIsRefused) {
    expectRefused({model, folder.path("out.vtu")},
                  folder.path("out.vtu") +
                      ": can't hold the model's 2 steps; name a .pvd file, or one step with --step");
}

TEST_F(ExportCommand, UnknownStepIsRefused) {
    expectRefused({"--step", "Step 9", model, folder.path("out.pvd")},
                  model + ": has no step \"Step 9\"; its steps are: 1 \"Load\" @0.1, 2 \"Mode 1\" @12.5");
}

TEST_F(ExportCommand, RangeOfStepsIsTaken) {
    ASSERT_EQ(runMox({"export", "--step", "@0.1:last", model, folder.path("all.pvd")}).exitCode, 0);
    EXPECT_EQ(std::distance(fs::directory_iterator(folder.path("all_steps")), {}), 2);
    ASSERT_EQ(runMox({"export", "--step", "2", model, folder.path("mode.pvd")}).exitCode, 0);
    EXPECT_EQ(std::distance(fs::directory_iterator(folder.path("mode_steps")), {}), 1);
}

TEST_F(ExportCommand, ExistingOutputIsKeptUnlessToBeOverwritten) {
    const auto output = folder.write("out.vtu", "precious");
    expectRefused({"--step", "Load", model, output}, output + ": exists already; --overwrite replaces it");
    EXPECT_EQ(folder.read("out.vtu"), "precious");
    EXPECT_EQ(runMox({"export", "--overwrite", "--step", "Load", model, output}).exitCode, 0);
    EXPECT_TRUE(folder.read("out.vtu").starts_with("<?xml"));
}

TEST_F(ExportCommand, FolderOfStepsIsReplacedOnlyIfAskedForAndOnlyByItsLike) {
    const auto output = folder.path("out.pvd");
    const auto steps = folder.path("out_steps");
    ASSERT_EQ(runMox({"export", model, output}).exitCode, 0);
    fs::remove(output);
    expectRefused({model, output}, steps + ": exists already; --overwrite replaces it");
    EXPECT_EQ(runMox({"export", "--overwrite", "--step", "Load", model, output}).exitCode, 0);
    EXPECT_EQ(std::distance(fs::directory_iterator(steps), {}), 1);
    folder.write("out_steps/notes.txt", "precious");
    expectRefused({"--overwrite", model, output},
                  steps +
                      ": holds more than .vtu files and is not replaced; remove it or choose another name");
    EXPECT_EQ(folder.read("out_steps/notes.txt"), "precious");
    EXPECT_EQ(folder.files(), (Files{"model.mox", "out.pvd", "out_steps"}));
}

TEST_F(ExportCommand, FolderOfTheOutputMustExist) {
    const auto output = folder.path("none/out.pvd");
    expectRefused({model, output}, output + ": the folder does not exist");
}

TEST_F(ExportCommand, InputIsNeverReplaced) {
    const auto input = folder.write("model.e", folder.read("model.mox"));
    expectRefused({"--overwrite", input, input}, input + ": is the input itself");
}

TEST_F(ExportCommand, InstancesThatMultiplyTheNodesOutOfProportionAreRefused) {
    expectTooMuch(saveShared(17, 0), "out.vtu");
}

// A mesh of 16 MiB, in a file for each of 17 steps.
TEST_F(ExportCommand, StepsThatMultiplyTheMeshOutOfProportionAreRefused) {
    expectTooMuch(saveShared(1, 17), "out.pvd");
}

#ifdef MOX_HAS_EXODUS
// A result of 5.3 MiB in each of 60 steps.
TEST_F(ExportCommand, LinksThatMultiplyAResultOutOfProportionAreRefused) {
    expectTooMuch(saveShared(1, 60), "out.e");
}
#endif

TEST_F(ExportCommand, FolderOfStepsStandsBesideTheListThatALinkLeadsTo) {
    fs::create_directory(folder.path("there"));
    fs::create_symlink("there/real.pvd", folder.path("link.pvd"));
    ASSERT_EQ(runMox({"export", model, folder.path("link.pvd")}).exitCode, 0);
    EXPECT_TRUE(fs::is_symlink(folder.path("link.pvd")));
    EXPECT_TRUE(fs::exists(folder.path("there/real_steps/step_00001.vtu")));
    EXPECT_NE(folder.read("there/real.pvd").find("\"real_steps/step_00001.vtu\""), std::string::npos);
    EXPECT_EQ(folder.files(), (Files{"link.pvd", "model.mox", "there"}));
}

TEST_F(ExportCommand, ElementsOfNoKnownShapeAreNotedOnceWithWhatIsWritten) {
    namespace Mox = Qel::Mox2;
    {
        Mox::Model odd;
        odd.saveTo(folder.path("odd.mox"), {true, "", "", ""});
        const auto root = odd.addNode(Mox::RootGroup, "odd");
        for (const std::string type : {"TETRA14", "TETRA14", ""}) {
            odd.setCurrentNodeId(root);
            const auto solid = odd.addNode(Mox::Shape, "Solid");
            Mox::Step step;
            if (!type.empty()) {
                step.attributes.set("Element Type", type);
                step.attributes.set("Block Id", 1);
            }
            Mox::Array1d<unsigned int> nodes(14, 0U);
            odd.addArrayProperty(Mox::Coordinates, Mox::Array2d<float>(1, 3, 0.0F), solid, Mox::Step{});
            odd.addArrayProperty(Mox::Connectivity2, nodes, solid, step);
            odd.addArrayProperty(Mox::Polylength2, Mox::Array1d<unsigned int>{14}, solid, Mox::Step{});
        }
        odd.close();
    }
#ifdef MOX_HAS_EXODUS
    const auto exodus = runMox({"export", folder.path("odd.mox"), folder.path("odd.e")});
    EXPECT_TRUE(exodus.says("note: elements of no known shape have the type OTHER: 1 block\n"
                            "note: elements of no known shape have the type TETRA14: 2 blocks\n"))
        << exodus.messages;
#endif
    const auto vtk = runMox({"export", folder.path("odd.mox"), folder.path("odd.vtu")});
    EXPECT_TRUE(vtk.says("note: elements of no known shape are loose points: 3 blocks\n")) << vtk.messages;
}

TEST_F(ExportCommand, FormatCanBeNamedWhateverTheExtension) {
    EXPECT_EQ(runMox({"export", "--format", "vtu", "--step", "Load", model, folder.path("out.xml")}).exitCode,
              0);
    EXPECT_TRUE(folder.read("out.xml").starts_with("<?xml"));
}

TEST_F(ExportCommand, DashWritesTheSameVtuToStandardOutput) {
    ASSERT_EQ(runMox({"export", "--step", "Load", model, folder.path("out.vtu")}).exitCode, 0);
    const auto run = runMox({"export", "--step", "Load", model, "-"});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_TRUE(run.output == folder.read("out.vtu"));
    EXPECT_TRUE(run.messages.starts_with("stdout: shapes: 2,")) << run.messages;
    EXPECT_EQ(folder.files(), (Files{"model.mox", "out.vtu"}));
}

TEST_F(ExportCommand, QuietExportSaysNothing) {
    const auto run = runMox({"export", "-q", "--step", "Load", model, folder.path("out.vtu")});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.messages, "");
}

TEST_F(ExportCommand, FormatsThatNoPipeTakesAreRefusedForStandardOutput) {
    expectRefused(
        {"--format", "exodus", model, "-"},
        "Exodus II can't be written to stdout, since its library goes back and forth in a file (see mox "
        "export --help)",
        2);
    expectRefused(
        {"--format", "pvd", model, "-"},
        "pvd can't be written to stdout, since it takes several files; choose vtu and a step (see mox "
        "export --help)",
        2);
    expectRefused({model, "-"},
                  "stdout: can't hold the model's 2 steps; name a .pvd file, or one step with --step");
}

TEST_F(ExportCommand, PartIsTakenWithAllBelowIt) {
    const auto faces = runMox({"export", "-p", "/Assembly/Moved", model, folder.path("faces.vtu")});
    EXPECT_EQ(faces.exitCode, 0);
    EXPECT_TRUE(faces.says("shapes: 1, nodes: 6, elements: 3, steps: 0, datasets: 1\n")) << faces.messages;
    const auto both = runMox({"export", "-p", "/Assembly/Moved/Faces", "--part", "/Assembly/Cube", "-s",
                              "Load", model, folder.path("both.vtu")});
    EXPECT_TRUE(both.says("shapes: 2, nodes: 14, elements: 4, steps: 1")) << both.messages;
}

TEST_F(ExportCommand, PartThatIsNotThereOrHasNoMeshIsRefused) {
    expectRefused({"-p", "/Assembly/Moon", model, folder.path("out.vtu")},
                  model + ": has no node \"/Assembly/Moon\"; mox tree shows all nodes");
    expectRefused({"-p", "/Assembly/Empty", model, folder.path("out.vtu")},
                  model + ": these parts have no geometry with Coordinates, Connectivity and Polylength");
}

TEST_F(ExportCommand, DatasetsAreTakenByTheirNames) {
    const auto run = runMox({"export", "-d", "Str*", "-d", "Thick?ess", model, folder.path("out.vtu")});
    EXPECT_EQ(run.exitCode, 0) << run.messages;
    EXPECT_TRUE(run.says("steps: 1, datasets: 2\n")) << run.messages;
    const auto content = folder.read("out.vtu");
    EXPECT_NE(content.find("Name=\"Stress\""), std::string::npos);
    EXPECT_NE(content.find("Name=\"Thickness\""), std::string::npos);
    EXPECT_EQ(content.find("Name=\"Displacement\""), std::string::npos);
}

TEST_F(ExportCommand, PatternThatNoDatasetMatchesIsRefused) {
    expectRefused({"-d", "Stres", model, folder.path("out.vtu")},
                  model + ": what is chosen has no dataset \"Stres\"; mox tree lists them");
    expectRefused({"-p", "/Assembly/Cube", "-d", "Thickness", model, folder.path("out.vtu")},
                  model + ": what is chosen has no dataset \"Thickness\"; mox tree lists them");
}
