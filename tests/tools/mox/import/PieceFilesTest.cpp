#include "import/PieceFiles.h"

#include "Support/TemporaryFolder.h"
#include "common/Failure.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace {

using MoxTool::PieceFiles;
using MoxTool::PieceName;

TEST(PieceName, LastTwoNumbersAreTheCountAndTheRank) {
    const auto name = PieceName::of("/tmp/run.e.4.3");
    ASSERT_TRUE(name);
    EXPECT_EQ(name->whole, "/tmp/run.e");
    EXPECT_EQ(name->count, 4u);
    EXPECT_EQ(name->rank, 3u);
}

TEST(PieceName, NumbersBeforeTheLastTwoBelongToTheName) {
    const auto name = PieceName::of("run.2.1.e.16.8.12.7");
    ASSERT_TRUE(name);
    EXPECT_EQ(name->whole, "run.2.1.e.16.8");
    EXPECT_EQ(name->count, 12u);
    EXPECT_EQ(name->rank, 7u);
}

TEST(PieceName, LeadingZerosDoNotCount) {
    const auto name = PieceName::of("run.e.0128.010");
    ASSERT_TRUE(name);
    EXPECT_EQ(name->count, 128u);
    EXPECT_EQ(name->rank, 10u);
}

TEST(PieceName, OtherNamesAreThoseOfNoPiece) {
    for (const auto* path : {"run.e", "run.e.4", "run.e.4.4", "run.e.0.0", "run.e.4.-1", "run.e.4.1.bak",
                             ".4.1", "folder/.4.1", "run.e.4.0x1", "run.e.4.", "run.e.10000000000.1", ""}) {
        EXPECT_FALSE(PieceName::of(path)) << path;
    }
}

class PieceFilesTest : public testing::Test {
protected:
    void touch(const std::vector<std::string>& names) const {
        for (const auto& name : names) {
            folder.write(name, "");
        }
    }
    std::vector<std::string> namesOf(const PieceFiles& files) const {
        std::vector<std::string> names;
        for (const auto& path : files.paths) {
            EXPECT_EQ(path.rfind(folder.path(""), 0), 0u) << path;
            names.push_back(path.substr(path.find_last_of('/') + 1));
        }
        return names;
    }
    template <typename Work>
    static std::string failureOf(const Work& work) {
        try {
            work();
        } catch (const MoxTool::Failure& failure) {
            return failure.what();
        }
        return "no failure";
    }
    std::string failureOfPattern(const std::string& pattern) const {
        return failureOf([&] { PieceFiles::matching(folder.path(pattern)); });
    }

    Support::TemporaryFolder folder;
};

TEST_F(PieceFilesTest, PiecesAreInTheOrderOfTheirNumbersNotOfTheirLetters) {
    std::vector<std::string> names;
    for (int rank = 0; rank < 12; ++rank) {
        names.push_back("run.e.12." + std::to_string(rank));
    }
    touch(names);
    EXPECT_EQ(namesOf(PieceFiles::matching(folder.path("run.e.12.*"))), names);
    EXPECT_EQ(namesOf(PieceFiles::besides(folder.path("run.e.12.10"))), names);
}

TEST_F(PieceFilesTest, RanksWithAndWithoutLeadingZerosGoTogether) {
    touch({"run.e.3.000", "run.e.3.1", "run.e.3.02"});
    const std::vector<std::string> expected = {"run.e.3.000", "run.e.3.1", "run.e.3.02"};
    EXPECT_EQ(namesOf(PieceFiles::matching(folder.path("run.e.3.*"))), expected);
}

TEST_F(PieceFilesTest, TwoFilesOfOneRankAreRefusedAndNamed) {
    touch({"run.e.11.10", "run.e.11.010", "run.e.11.0"});
    const std::string expected =
        folder.path("run.e.11.10") + ": is piece 10 as run.e.11.010 is; remove one of them";
    EXPECT_EQ(failureOfPattern("run.e.11.*"), expected);
    EXPECT_EQ(failureOf([&] { PieceFiles::besides(folder.path("run.e.11.0")); }), expected);
}

TEST_F(PieceFilesTest, FilesThatAreNoPiecesArePassedOver) {
    touch({"run.e.2.0", "run.e.2.1", "run.e.2.2", "run.e.2.1.bak", "run.e", "other.e.2.0"});
    const std::vector<std::string> expected = {"run.e.2.0", "run.e.2.1"};
    EXPECT_EQ(namesOf(PieceFiles::besides(folder.path("run.e.2.0"))), expected);
    EXPECT_EQ(namesOf(PieceFiles::matching(folder.path("run.e.2.*"))), expected);
}

TEST_F(PieceFilesTest, PiecesOfTwoModelsAreRefused) {
    touch({"run.e.1.0", "other.e.1.0"});
    EXPECT_EQ(failureOfPattern("*.e.1.*"),
              folder.path("*.e.1.*") +
                  ": matches pieces of different models or decompositions: other.e.1.0 and run.e.1.0");
}

TEST_F(PieceFilesTest, TenOfManyMissingPiecesAreListed) {
    touch({"run.e.200.0", "run.e.200.5", "run.e.200.199"});
    EXPECT_EQ(
        failureOfPattern("run.e.200.*"),
        folder.path("run.e.200.*") +
            ": pieces 1, 2, 3, 4, 6, 7, 8, 9, 10, 11 and 187 more of 200, numbered from 0, are missing");
}

TEST_F(PieceFilesTest, WholeHasTheNameWithoutTheNumbers) {
    touch({"run.4.2.1.0"});
    EXPECT_EQ(PieceFiles::besides(folder.path("run.4.2.1.0")).whole, folder.path("run.4.2"));
}

} // namespace
