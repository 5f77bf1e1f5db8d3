#include "common/NumberFile.h"

#include "Support/SampleModel.h"
#include "Support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

std::string write(const Support::TemporaryFolder& folder, const SampleModel& model) {
    const auto bytes = model.file().bytes();
    return folder.write("model.mox", std::string(bytes.begin(), bytes.end()));
}

const MoxReader::Dataset& dataset(const MoxTool::NumberFile& file, std::size_t index) {
    return file.model().node(3).geometry()->datasets[index];
}

std::string failureOf(const std::string& path) {
    try {
        MoxTool::NumberFile file(path);
        return "";
    } catch (const MoxTool::Failure& failure) {
        return failure.what();
    }
}

} // namespace

TEST(NumberFile, ReadsNumbersOfBothTypesAndThroughLinks) {
    const Support::TemporaryFolder folder;
    MoxTool::NumberFile file(write(folder, SampleModel()));
    EXPECT_EQ(file.read(dataset(file, 1)),
              (MoxTool::Numbers(std::vector<std::uint32_t>{0x04030201, 0x08070605})));
    EXPECT_EQ(file.read(dataset(file, 3)), (MoxTool::Numbers(std::vector<float>{0.5F, -1})));
    EXPECT_EQ(&file.holder(dataset(file, 3)), &dataset(file, 2));
}

TEST(NumberFile, DatasetsThatClaimTheSameBytesAreRefused) {
    constexpr std::size_t SizeOfCoordinates =
        41 /*group*/ + 4 /*count*/ + 4 + 11 /*key*/ + 4 /*type*/ + 1 /*link*/;
    const Support::TemporaryFolder folder;
    SampleModel model;
    ASSERT_EQ(model.light[SizeOfCoordinates], 24);
    model.light[SizeOfCoordinates] = 96;
    const auto path = write(folder, model);
    EXPECT_EQ(
        failureOf(path),
        path + ": its datasets claim more numbers than it holds; mox check lists all damage, --no-limit goes "
               "on all the same");
    EXPECT_NO_THROW(MoxTool::NumberFile(path, true));
}

TEST(NumberFile, LinkThatLeadsNowhereIsAFailureOfTheFile) {
    const Support::TemporaryFolder folder;
    SampleModel model;
    const auto link = linkEntry("Stress\x1EStep2", 0x01000010, 3, 2);
    const auto entry = std::search(model.light.begin(), model.light.end(), link.begin(), link.end());
    const auto place = entry + static_cast<std::ptrdiff_t>(link.size()) - 5;
    ASSERT_EQ(*place, 2);
    *place = 7;
    const auto path = write(folder, model);
    MoxTool::NumberFile file(path);
    try {
        file.holder(dataset(file, 3));
        FAIL() << "no failure";
    } catch (const MoxTool::Failure& failure) {
        EXPECT_TRUE(
            std::string(failure.what()).starts_with(path + ": the dataset is a link to a dataset that "));
    }
}
