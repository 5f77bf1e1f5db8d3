#include "Support/TemporaryFolder.h"
#include "api/Support/Failures.h"
#include "api/Support/Fifo.h"
#include "api/Support/MeantLeak.h"
#include "api/Support/PublicNames.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>

namespace Api {

using Support::TemporaryFolder;

namespace {

constexpr const char* FullDevice = "/dev/full";

SaverOptions overwriting() {
    SaverOptions options;
    options.overwrite = true;
    return options;
}

// A model that is saved into a pipe, which can be written but not positioned. Never destroyed, since a close
// that fails in the destructor ends the process.
Model& modelInPipe(const std::string& path) {
    const MeantLeak meant;
    Model& model = *new Model;
    model.saveTo(path, overwriting());
    model.addNode(Group, "root");
    model.addNode(Shape, "part");
    return model;
}

class ModelInPipe : public testing::Test {
protected:
    void SetUp() override {
        if (!pipe.isOpen()) {
            GTEST_SKIP() << "this system has no named pipes in its file system";
        }
    }

    TemporaryFolder folder;
    const std::string path = folder.path("pipe");
    Fifo pipe{path};
};

using ModelInPipeDeathTest = ModelInPipe;

} // namespace

TEST_F(ModelInPipe, SeekFailureAtCloseIsReported) {
    Model& model = modelInPipe(path);
    EXPECT_TRUE(fails([&] { model.close(); }, savingTheBufferFailed()));
}

TEST_F(ModelInPipe, SeekFailureAtCloseLeavesTheModelOpenWithItsNodes) {
    Model& model = modelInPipe(path);
    EXPECT_TRUE(fails([&] { model.close(); }, savingTheBufferFailed()));
    EXPECT_TRUE(fails([&] { model.saveTo(folder.path("other.mox"), SaverOptions()); }, notEmpty()));
    EXPECT_EQ(model.getNodeId("/root/part"), 2U);
    EXPECT_EQ(model.addNode(Group, "later"), 4U);
}

TEST_F(ModelInPipe, CloseCanBeCalledAgainAfterAFailure) {
    Model& model = modelInPipe(path);
    EXPECT_TRUE(fails([&] { model.close(); }, savingTheBufferFailed()));
    EXPECT_TRUE(fails([&] { model.close(); }, savingTheBufferFailed()));
    model.setCurrentNodeId(3);
    model.addArrayProperty(NodeIds, Array1d<unsigned int>({1, 2, 3}), 3U, Step());
    EXPECT_TRUE(fails([&] { model.close(); }, savingTheBufferFailed()));
}

TEST_F(ModelInPipe, CloseCanBeCalledAgainAfterAFailureWithArrays) {
    Model& model = modelInPipe(path);
    model.addArrayProperty(NodeIds, Array1d<unsigned int>({1, 2, 3}), 3U, Step());
    EXPECT_TRUE(fails([&] { model.close(); }, savingTheBufferFailed()));
    model.addArrayProperty(NodeIds, Array1d<unsigned int>({4, 5}), 3U, Step());
    EXPECT_TRUE(fails([&] { model.close(); }, savingTheBufferFailed()));
}

TEST_F(ModelInPipeDeathTest, FailingCloseInTheDestructorEndsTheProcess) {
    EXPECT_DEATH(
        {
            auto model = std::make_unique<Model>();
            model->saveTo(path, overwriting());
            model.reset();
        },
        "Saving the buffer failed");
}

TEST(ModelOnFullDevice, FailedWritesStayUnseen) {
    if (!std::filesystem::exists(FullDevice)) {
        GTEST_SKIP() << "this system has no device that is always full";
    }
    Model model;
    EXPECT_NO_THROW(model.saveTo(FullDevice, overwriting()));
    EXPECT_EQ(model.addNode(Group, "root"), 1U);
    EXPECT_EQ(model.addNode(Shape, "part"), 3U);
    EXPECT_NO_THROW(model.addArrayProperty(NodeIds, Array1d<unsigned int>({1, 2, 3}), 3U, Step()));
    EXPECT_NO_THROW(model.close());
    EXPECT_TRUE(fails([&] { model.addNode(Group, "root"); }, fileNotOpen()));
}

} // namespace Api
