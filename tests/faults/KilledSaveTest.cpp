// A process is killed within each of its calls of the file system, and at moments of its own.

#include "Support/Bytes.h"
#include "Support/CaseStride.h"
#include "Support/TemporaryFolder.h"
#include "faults/FailingFiles.h"
#include "faults/SavedSteps.h"
#include "faults/checkFile.h"

#include <gtest/gtest.h>

#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <random>

namespace Faults {

namespace {

using Call = FailingFiles::Call;

constexpr unsigned int FullBlocks = SavedSteps::Arrays / SavedSteps::ArraysInABlock;
/// How many processes are killed at a moment of chance; few, unless it is set.
constexpr const char* KillsVariable = "MOXWRITER_KILLS";
constexpr unsigned int FewKills = 20;

// Twelve bytes of the header in two writes, then one write for each block.
constexpr unsigned int HeaderWrites = 2;

constexpr auto KillStride = static_cast<unsigned int>(CaseStride);

class KilledSave : public testing::Test {
protected:
    void TearDown() override { EXPECT_GT(killed, 0U); }

    /// @return whether the process was killed, and did not end by itself.
    bool saveInChild(const std::function<void(pid_t)>& inParent, const FailingFiles::Plan* plan) {
        std::filesystem::remove(path);
        const pid_t child = fork();
        if (child == 0) {
            if (plan != nullptr) {
                FailingFiles::arm(*plan);
            }
            SavedSteps steps;
            steps.build(path);
            _exit(steps.close() ? 0 : 1);
        }
        inParent(child);
        int status = 0;
        waitpid(child, &status, 0);
        const bool wasKilled = WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL;
        EXPECT_TRUE(wasKilled || (WIFEXITED(status) && WEXITSTATUS(status) == 0));
        killed += wasKilled ? 1 : 0;
        return wasKilled;
    }

    bool isKilledAt(Call call, unsigned int number) {
        const FailingFiles::Plan plan{call, number, FailingFiles::Mode::Once, FailingFiles::Fault::Killed};
        return saveInChild([](pid_t) {}, &plan);
    }

    Support::TemporaryFolder folder;
    const std::string path = folder.path("saved.mox");
    unsigned int killed = 0;
};

unsigned int kills() {
    const char* const text = std::getenv(KillsVariable);
    return text != nullptr ? static_cast<unsigned int>(std::strtoul(text, nullptr, 10)) : FewKills;
}

} // namespace

TEST_F(KilledSave, WithinAnyWriteLeavesNoFileThatPassesForWhole) {
    for (unsigned int number = 1; isKilledAt(Call::Write, number); number += KillStride) {
        SCOPED_TRACE("write " + std::to_string(number));
        EXPECT_EQ(checkFile(path), CheckResult::Damaged);
    }
    EXPECT_GT(killed, FullBlocks / KillStride);
}

TEST_F(KilledSave, WithinAWriteLeavesAllBlocksBeforeIt) {
    for (unsigned int number = 1; number <= HeaderWrites + FullBlocks; number += KillStride) {
        ASSERT_TRUE(isKilledAt(Call::Write, number));
        const unsigned int written = number <= HeaderWrites ? 0 : number - HeaderWrites - 1;
        EXPECT_EQ(salvagedBlocks(path, folder.path("blocks")), written) << "write " << number;
    }
}

TEST_F(KilledSave, AtAnySeekLeavesNoFileThatPassesForWhole) {
    for (unsigned int number = 1; isKilledAt(Call::Seek, number); number += KillStride) {
        SCOPED_TRACE("seek " + std::to_string(number));
        EXPECT_EQ(checkFile(path), CheckResult::Damaged);
    }
    EXPECT_GT(killed, FullBlocks / KillStride);
}

// By then all has been written.
TEST_F(KilledSave, AtTheCloseOfTheFileLeavesAWholeFile) {
    ASSERT_TRUE(isKilledAt(Call::Close, 1));
    EXPECT_EQ(checkFile(path), CheckResult::Whole);
}

TEST_F(KilledSave, AtAMomentOfChanceLeavesNoFileThatPassesForWholeUnlessItEnded) {
    SavedSteps whole;
    whole.build(path);
    ASSERT_TRUE(whole.close());
    const Support::ByteVector sound = Support::bytesOf(path);
    std::mt19937 random(20); // NOLINT(cert-msc51-cpp): the same moments in each run
    std::uniform_int_distribution<useconds_t> moment(0, 6000);
    for (unsigned int i = 0; i < kills(); i += KillStride) {
        saveInChild(
            [&](pid_t child) {
                usleep(moment(random));
                ::kill(child, SIGKILL);
            },
            nullptr);
        const bool isWhole = std::filesystem::exists(path) && Support::bytesOf(path) == sound;
        EXPECT_EQ(checkFile(path), isWhole ? CheckResult::Whole : CheckResult::Damaged) << "kill " << i;
    }
}

} // namespace Faults
