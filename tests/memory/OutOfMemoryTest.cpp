#include "Support/EnvironmentGuard.h"
#include "Support/TemporaryFolder.h"
#include "memory/FailingAllocator.h"
#include "memory/Workload.h"

#include <gtest/gtest.h>

#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>

namespace {

using Memory::FailingAllocator;
using Memory::Workload;

// Larger than each array, so that a full block goes to disk before the next is opened.
const std::string SmallBlocks = "700";

enum Outcome { Sound, NothingFailed, Wrong };

// If it is set, every allocation is made to fail, one in each run; otherwise only some are, evenly spread.
constexpr const char* EveryAllocationVariable = "MOXWRITER_FAIL_EVERY_ALLOCATION";

constexpr unsigned int QuickStride = MOXWRITER_ALLOCATION_STRIDE;

unsigned int stride() {
    return std::getenv(EveryAllocationVariable) != nullptr ? 1 : QuickStride;
}

// After this run, what the library keeps for the life of the process is there, and doesn't count as a leak.
void runWithoutFailure(const std::string& folder) {
    FailingAllocator::arm(0, FailingAllocator::Mode::Once);
    FailingAllocator::disarm();
    ASSERT_TRUE(Workload(folder).run());
}

void runSoundly(const std::string& folder) {
    const long long liveBefore = FailingAllocator::live();
    auto workload = std::make_unique<Workload>(folder);
    if (!workload->run()) {
        // Its destructor would close the model once more, and end the process if that fails.
        (void)workload.release();
        return;
    }
    workload.reset();
    if (FailingAllocator::live() != liveBefore) {
        throw std::runtime_error("memory has leaked");
    }
}

Outcome runWithFailure(unsigned int failing, FailingAllocator::Mode mode, const std::string& folder) {
    FailingAllocator::arm(failing, mode);
    FailingAllocator::disarm();
    try {
        runSoundly(folder);
    } catch (const std::exception& wrong) {
        (void)std::fprintf(stderr, "allocation %u: %s\n", failing, wrong.what());
        return Wrong;
    }
    return FailingAllocator::hasFailed() ? Sound : NothingFailed;
}

// In a process of its own, because the failure may end it.
Outcome runInChild(unsigned int failing, FailingAllocator::Mode mode, const std::string& folder) {
    const pid_t child = fork();
    if (child == 0) {
        _exit(runWithFailure(failing, mode, folder));
    }
    int status = 0;
    waitpid(child, &status, 0);
    if (!WIFEXITED(status)) {
        (void)std::fprintf(stderr, "allocation %u: signal %d\n", failing, WTERMSIG(status));
        return Wrong;
    }
    return static_cast<Outcome>(WEXITSTATUS(status));
}

void failEachAllocation(FailingAllocator::Mode mode, const std::optional<std::string>& blockSize) {
    constexpr unsigned int enough = 10;
    const Support::EnvironmentGuard environment(Support::BlockSizeVariable, blockSize);
    const Support::TemporaryFolder folder;
    runWithoutFailure(folder.path(""));
    unsigned int failing = 1;
    unsigned int wrong = 0;
    for (Outcome outcome = Sound; outcome != NothingFailed && wrong < enough; failing += stride()) {
        outcome = runInChild(failing, mode, folder.path(""));
        wrong += outcome == Wrong ? 1 : 0;
    }
    EXPECT_EQ(wrong, 0U);
    EXPECT_GT(failing, 1000U) << "hardly anything was allocated";
}

TEST(OutOfMemory, OneFailedAllocationLeavesASoundModel) {
    failEachAllocation(FailingAllocator::Mode::Once, {});
}

TEST(OutOfMemory, OneFailedAllocationLeavesASoundModelOfManyBlocks) {
    failEachAllocation(FailingAllocator::Mode::Once, SmallBlocks);
}

TEST(OutOfMemory, MemoryThatStaysOutLeavesASoundModel) {
    failEachAllocation(FailingAllocator::Mode::FromThenOn, {});
}

TEST(OutOfMemory, MemoryThatStaysOutLeavesASoundModelOfManyBlocks) {
    failEachAllocation(FailingAllocator::Mode::FromThenOn, SmallBlocks);
}

} // namespace
