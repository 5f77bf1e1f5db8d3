#include "Support/Bytes.h"
#include "Support/TemporaryFolder.h"
#include "api/Support/Failures.h"
#include "api/Support/MeantLeak.h"
#include "api/Support/OpenModel.h"
#include "api/Support/PublicNames.h"
#include "api/Support/SavedModel.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <memory>
#include <type_traits>

namespace Api {

using Support::Bytes;
using Support::bytesOf;
using Support::TemporaryFolder;

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

using Bytes8 = std::vector<std::uint8_t>;

// 0x89, "TNF\r\n", 0x1A, "\n", then "1.3" with its terminator.
const Bytes8 TwelveBytes = {0x89, 0x54, 0x4E, 0x46, 0x0D, 0x0A, 0x1A, 0x0A, 0x31, 0x2E, 0x33, 0x00};

Failure fileExists() {
    return failure<Qel::Exception::FileOpenException>(5, "File exists.", "Qel/Tnf/TnFile",
                                                      "QelTnf::TnFile::OpenFileForWriting");
}

void addGroupWithShape(Model& model) {
    model.addNode(Group, "root");
    const unsigned int geometry = model.addNode(Shape, "part");
    model.addArrayProperty(NodeIds, Array1d<unsigned int>({10, 20, 30}), geometry, Step());
}

class ModelLifecycle : public testing::Test {
protected:
    static SaverOptions overwriting() {
        SaverOptions options;
        options.overwrite = true;
        return options;
    }

    void makeOldFile() const { std::ofstream(path) << "old content that is longer than twelve bytes"; }

    TemporaryFolder folder;
    const std::string path = folder.path("model.mox");
    Model model;
};

using OpenedModel = OpenModel;

} // namespace

static_assert(!std::is_copy_constructible_v<Model>);
static_assert(Model::INVALID_ID == 0xFFFFFFFFU);

TEST_F(ModelLifecycle, DefaultPathSeparatorIsASlashAndTheSameObjectOnEachCall) {
    EXPECT_EQ(Model::defaultPathSeparator(), "/");
    EXPECT_EQ(&Model::defaultPathSeparator(), &Model::defaultPathSeparator());
}

// --- Empty

TEST_F(ModelLifecycle, CloseOfANewModelDoesNothing) {
    EXPECT_NO_THROW(model.close());
    EXPECT_NO_THROW(model.close());
}

TEST_F(ModelLifecycle, EmptyModelRefusesAllThatWritesWithFileNotOpen) {
    EXPECT_TRUE(fails([&] { model.addNode(Group, "root"); }, fileNotOpen()));
    EXPECT_TRUE(fails([&] { model.setNodeData(1, NodeProperties()); }, fileNotOpen()));
    EXPECT_TRUE(fails([&] { model.addArrayProperty(NodeIds, Array1d<unsigned int>({1}), 3U, Step()); },
                      fileNotOpen()));
    EXPECT_TRUE(fails([&] { model.addAssemblyComponents(std::vector<std::string>{"/a"}); }, fileNotOpen()));
    EXPECT_TRUE(fails(
        [&] {
            model.addAssemblyComponents(std::map<std::string, Attributes>{{"/a", {}}});
        },
        fileNotOpen()));
}

TEST_F(ModelLifecycle, EmptyModelRefusesNavigationWithNotInitialized) {
    EXPECT_TRUE(fails([&] { model.moveToParentNode(); }, notInitialized()));
    EXPECT_TRUE(fails([&] { model.setCurrentNodeId(1); }, notInitialized()));
    EXPECT_TRUE(fails([&] { model.getNodeId("/a/b"); }, notInitialized()));
    EXPECT_TRUE(fails([&] { model.getNodeId(""); }, notInitialized()));
    EXPECT_TRUE(fails([&] { model.getNodeId(std::vector<std::string>{"a", "b"}); }, notInitialized()));
}

TEST_F(ModelLifecycle, RefusedCallsLeaveAnEmptyModelThatCanBeOpened) {
    EXPECT_TRUE(fails([&] { model.addNode(Group, "root"); }, fileNotOpen()));
    EXPECT_TRUE(fails([&] { model.moveToParentNode(); }, notInitialized()));
    model.saveTo(path, SaverOptions());
    EXPECT_EQ(model.addNode(Group, "root"), 1U);
}

TEST_F(ModelLifecycle, CloseReturnsToEmptyAndASecondCloseDoesNothing) {
    model.saveTo(path, SaverOptions());
    model.close();
    const Bytes8 finished = bytesOf(path);
    EXPECT_NO_THROW(model.close());
    EXPECT_EQ(bytesOf(path), finished);
    EXPECT_TRUE(fails([&] { model.addNode(Group, "root"); }, fileNotOpen()));
    EXPECT_TRUE(fails([&] { model.moveToParentNode(); }, notInitialized()));
}

// --- Opening

TEST_F(ModelLifecycle, TwelveBytesAreOnDiskWhenSaveToReturns) {
    model.saveTo(path, SaverOptions());
    EXPECT_EQ(bytesOf(path), TwelveBytes);
}

TEST_F(ModelLifecycle, OverwriteEmptiesAnExistingFileAtOnce) {
    makeOldFile();
    model.saveTo(path, overwriting());
    EXPECT_EQ(bytesOf(path), TwelveBytes);
}

TEST_F(ModelLifecycle, SaveToTwiceIsRefusedAndLeavesTheFirstFileAndTreeWorking) {
    const std::string second = folder.path("second.mox");
    model.saveTo(path, SaverOptions());
    model.addNode(Group, "root");
    EXPECT_TRUE(fails([&] { model.saveTo(second, SaverOptions()); }, notEmpty()));
    EXPECT_FALSE(std::filesystem::exists(second));
    EXPECT_EQ(model.addNode(Group, "child"), 2U);
    model.close();
    const SavedModel saved(path);
    EXPECT_EQ(saved.nodeCount(), 2U);
    EXPECT_EQ(saved.node(2).name, "child");
}

TEST_F(ModelLifecycle, SaveToAfterCloseStartsAFreshTreeWithIdsFromOne) {
    model.saveTo(path, SaverOptions());
    addGroupWithShape(model);
    model.close();
    const std::string second = folder.path("second.mox");
    model.saveTo(second, SaverOptions());
    EXPECT_EQ(model.addNode(Group, "other"), 1U);
    model.close();
    EXPECT_EQ(SavedModel(path).nodeCount(), 3U);
    const SavedModel saved(second);
    EXPECT_EQ(saved.nodeCount(), 1U);
    EXPECT_EQ(saved.node(1).name, "other");
    EXPECT_FALSE(saved.file().hasStream("Heavy Data"));
}

TEST_F(ModelLifecycle, ExistingFileWithoutOverwriteIsUntouchedAndLeavesAModelWithoutFile) {
    makeOldFile();
    const Bytes8 before = bytesOf(path);
    EXPECT_TRUE(fails([&] { model.saveTo(path, SaverOptions()); }, fileExists()));
    EXPECT_TRUE(fails([&] { model.saveTo(folder.path("other.mox"), SaverOptions()); }, notEmpty()));
    EXPECT_EQ(model.addNode(Group, "root"), 1U);
    EXPECT_EQ(model.addNode(Shape, "part"), 3U);
    EXPECT_NO_THROW(model.setNodeData(2, NodeProperties()));
    EXPECT_EQ(model.addAssemblyComponents(std::vector<std::string>{"/root/x/"})[0], 4U);
    EXPECT_EQ(model.getNodeId("/root/x"), 4U);
    EXPECT_NO_THROW(model.close());
    EXPECT_EQ(bytesOf(path), before);
    EXPECT_TRUE(fails([&] { model.addNode(Group, "root"); }, fileNotOpen()));
    EXPECT_NO_THROW(model.saveTo(folder.path("other.mox"), SaverOptions()));
}

TEST_F(ModelLifecycle, ModelWithoutFileTakesArraysThatAreLostAtClose) {
    makeOldFile();
    const Bytes8 before = bytesOf(path);
    EXPECT_TRUE(fails([&] { model.saveTo(path, SaverOptions()); }, fileExists()));
    EXPECT_NO_THROW(addGroupWithShape(model));
    EXPECT_NO_THROW(model.close());
    EXPECT_EQ(bytesOf(path), before);
}

TEST_F(ModelLifecycle, PathThatCantBeOpenedIsNamedAndLeavesAModelWithoutFile) {
    const std::string unopenable = folder.path("missing/model.mox");
    const std::string text = "Unable to open file \"" + unopenable + "\"";
    const Failure expected = failure<Qel::Exception::MiscelleneousException>(2, text, "Qel/Tnf/TnFile",
                                                                             "QelTnf::TnFile::OpenFile");
    EXPECT_TRUE(fails([&] { model.saveTo(unopenable, SaverOptions()); }, expected));
    EXPECT_TRUE(fails([&] { model.saveTo(path, SaverOptions()); }, notEmpty()));
    EXPECT_EQ(model.addNode(Group, "root"), 1U);
    EXPECT_NO_THROW(model.close());
    EXPECT_FALSE(std::filesystem::exists(unopenable));
    EXPECT_NO_THROW(model.saveTo(path, SaverOptions()));
    EXPECT_EQ(model.addNode(Group, "root"), 1U);
}

// On Windows because the program's manifest asks for UTF-8.
TEST_F(ModelLifecycle, FileWithANameInUtf8BearsThatName) {
    model.saveTo(folder.path("") + "Größe-Ω-漢-𝄞.mox", SaverOptions());
    EXPECT_TRUE(std::filesystem::exists(std::filesystem::path(folder.path("")) / u8"Größe-Ω-漢-𝄞.mox"));
}

TEST_F(ModelLifecycle, FolderAsPathCantBeOpenedEvenWithOverwrite) {
    std::filesystem::create_directory(path);
    const std::string text = "Unable to open file \"" + path + "\"";
    EXPECT_TRUE(fails([&] { model.saveTo(path, overwriting()); },
                      failure<Qel::Exception::MiscelleneousException>(2, text, "Qel/Tnf/TnFile",
                                                                      "QelTnf::TnFile::OpenFile")));
}

TEST_F(ModelLifecycle, FailuresAreCaughtAsTheirClassAsTheFamilyAndAsStandardAndBoostExceptions) {
    EXPECT_THROW(model.addNode(Group, "root"), boost::wrapexcept<Qel::Exception::InvalidObjectState>);
    EXPECT_THROW(model.addNode(Group, "root"), Qel::Exception::InvalidObjectState);
    EXPECT_THROW(model.addNode(Group, "root"), Qel::Exception::Exception);
    EXPECT_THROW(model.addNode(Group, "root"), Qel::Exception::Base);
    EXPECT_THROW(model.addNode(Group, "root"), std::exception);
    EXPECT_THROW(model.addNode(Group, "root"), boost::exception);
}

// --- Closing

TEST_F(OpenedModel, CloseWithNoNodeAddedStillFinishesTheFile) {
    SavedModel file = saved();
    EXPECT_THAT(file.file().streamNames(), ElementsAre("Mox Tree", "Global Information"));
    // The count 1, the ids 1, 0, 0, 0, 0, 0, three empty texts and the position 0.
    const Bytes8 expected = Bytes().u32(1).u32(1).zeros(5 * 4).zeros(3 * 4).u64(0);
    EXPECT_EQ(file.stream("Mox Tree"), expected);
    EXPECT_EQ(file.stream("Light Data").size(), 0U);
    EXPECT_EQ(file.stream("Attributes").size(), 0U);
    EXPECT_EQ(file.stream("Resources").size(), 0U);
    EXPECT_EQ(file.model().globalInformation().modifiers.size(), 1U);
    EXPECT_EQ(file.model().globalInformation().resultAttributeCount, 0U);
}

TEST_F(OpenedModel, FileBeginsWithTheTwelveBytesAndTheHeadIndexOfTwentyRecords) {
    addGroupWithShape(model);
    model.close();
    const Bytes8 file = bytesOf(path);
    ASSERT_GE(file.size(), 2800U);
    EXPECT_EQ(Bytes8(file.begin(), file.begin() + 12), TwelveBytes);
    // The length 2784 of the head index and its count of 20.
    EXPECT_EQ(Bytes8(file.begin() + 12, file.begin() + 20), (Bytes8{0xE0, 0x0A, 0, 0, 20, 0, 0, 0}));
}

TEST_F(ModelLifecycle, DestroyingAnOpenModelSavesTheFileJustAsCloseDoes) {
    const std::string destroyed = folder.path("destroyed.mox");
    model.saveTo(path, SaverOptions());
    addGroupWithShape(model);
    model.close();
    {
        Model other;
        other.saveTo(destroyed, SaverOptions());
        addGroupWithShape(other);
    }
    const SavedModel byClose(path);
    const SavedModel byDestructor(destroyed);
    EXPECT_EQ(byDestructor.file().streamNames(), byClose.file().streamNames());
    for (const char* const name : {"Heavy Data", "Mox Tree", "Light Data", "Attributes", "Resources"}) {
        EXPECT_EQ(byDestructor.stream(name), byClose.stream(name)) << name;
        EXPECT_GT(byDestructor.stream(name).size(), 0U) << name;
    }
    EXPECT_EQ(byDestructor.model().globalInformation().modifiers.size(), 1U);
}

TEST_F(OpenedModel, NoBlockIsCalledViewPoints) {
    addGroupWithShape(model);
    EXPECT_THAT(saved().file().streamNames(), ElementsAre("Heavy Data", "Mox Tree", "Light Data",
                                                          "Attributes", "Resources", "Global Information"));
}

TEST_F(OpenedModel, SaveWritesNothingToTheStandardStreams) {
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    addGroupWithShape(model);
    model.close();
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

// --- Who wrote the file

TEST_F(ModelLifecycle, SourceNameAndVersionGoIntoTheFile) {
    SaverOptions options;
    options.sourceName = "Solver";
    options.sourceVersion = "7.2";
    options.sourceComment = "not kept";
    model.saveTo(path, options);
    model.close();
    const SavedModel saved(path);
    const MoxReader::ModifierInfo& info = saved.model().globalInformation().modifiers.at(0);
    EXPECT_EQ(info.version, "0.1");
    EXPECT_EQ(info.sourceName, "Solver");
    EXPECT_EQ(info.sourceVersion, "7.2");
    EXPECT_EQ(info.formatVersion, "1.3");
    EXPECT_THAT(info.date, testing::Not(IsEmpty()));
    EXPECT_EQ(info.comment, "");
}

TEST_F(ModelLifecycle, SourceVersionWithoutSourceNameIsDropped) {
    SaverOptions options;
    options.sourceVersion = "7.2";
    model.saveTo(path, options);
    model.close();
    const SavedModel saved(path);
    const MoxReader::ModifierInfo& info = saved.model().globalInformation().modifiers.at(0);
    EXPECT_EQ(info.sourceName, "");
    EXPECT_EQ(info.sourceVersion, "");
}

TEST_F(OpenedModel, ComputerAndUserAreEmptyInEveryFile) {
    const SavedModel file = saved();
    const MoxReader::ModifierInfo& info = file.model().globalInformation().modifiers.at(0);
    EXPECT_EQ(info.computer, "");
    EXPECT_EQ(info.user, "");
}

TEST_F(ModelLifecycle, SourceNameOfAnEarlierSaveIsForgotten) {
    SaverOptions options;
    options.sourceName = "Solver";
    options.sourceVersion = "7.2";
    model.saveTo(path, options);
    model.close();
    model.saveTo(folder.path("second.mox"), SaverOptions());
    model.close();
    const SavedModel saved(folder.path("second.mox"));
    ASSERT_EQ(saved.model().globalInformation().modifiers.size(), 1U);
    EXPECT_EQ(saved.model().globalInformation().modifiers[0].sourceName, "");
}

// --- Assignment

// If models share a database, only one of them may be destroyed; here none is.
TEST_F(ModelLifecycle, AssignedModelReachesTheSameDatabase) {
    const MeantLeak meant;
    Model& target = *new Model;
    Model& source = *new Model;
    EXPECT_EQ(&(target = source), &target);
    source.saveTo(path, SaverOptions());
    EXPECT_EQ(target.addNode(Group, "root"), 1U);
    EXPECT_EQ(source.addNode(Group, "child"), 2U);
    target.close();
    EXPECT_TRUE(fails([&] { source.addNode(Group, "root"); }, fileNotOpen()));
    EXPECT_EQ(SavedModel(path).nodeCount(), 2U);
}

TEST_F(ModelLifecycle, AssignmentNeitherClosesNorFreesTheFormerDatabase) {
    const MeantLeak meant;
    Model& target = *new Model;
    Model& sharing = *new Model;
    Model& source = *new Model;
    target.saveTo(path, SaverOptions());
    target.addNode(Group, "root");
    sharing = target;
    target = source;
    EXPECT_EQ(bytesOf(path), TwelveBytes);
    EXPECT_TRUE(fails([&] { target.addNode(Group, "child"); }, fileNotOpen()));
    EXPECT_EQ(sharing.addNode(Group, "child"), 2U);
    sharing.close();
    EXPECT_EQ(SavedModel(path).nodeCount(), 2U);
}

TEST_F(ModelLifecycle, AssignmentToItselfChangesNothing) {
    model.saveTo(path, SaverOptions());
    const Model& same = model;
    model = same;
    EXPECT_EQ(model.addNode(Group, "root"), 1U);
    model.close();
    EXPECT_EQ(SavedModel(path).nodeCount(), 1U);
}

} // namespace Api
