// What mox does when memory, the disk or its own life ends: one line and a code that says failure, and never a
// half-written file under a final name.

#include "Support/TemporaryFolder.h"
#include "program/Work.h"
#include "program/places.h"
#include "program/runMox.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <iterator>
#include <random>
#include <string>
#include <vector>

namespace {

using Program::Circumstances;
using Program::End;
using Program::Work;

class ProgramFault : public testing::Test {
protected:
    static void SetUpTestSuite() {
        inputs = new Support::TemporaryFolder;
        Work::makeInputs(inputs->path("."));
    }

    static void TearDownTestSuite() {
        delete inputs;
        inputs = nullptr;
    }

    static std::string folder() { return inputs->path("."); }

    // A summary may stand before the line that says what went wrong.
    static void expectOneLine(const Work& work, const End& end) {
        const std::vector<std::string> lines = work.addedMessages(end);
        ASSERT_EQ(lines.size(), 1U) << end.messages;
        EXPECT_TRUE(lines[0].starts_with("mox")) << end.messages;
        EXPECT_TRUE(end.messages.ends_with(lines[0] + "\n")) << end.messages;
    }

    // Either nothing went wrong after all, or the user is told and nothing is half-written.
    static void expectAllOrNothing(const Work& work, const End& end, bool mayLeaveTemporaryFiles = false) {
        ASSERT_EQ(end.signal, 0) << end.messages;
        if (end.exitCode == work.soundEnd().exitCode && end.messages == work.soundEnd().messages) {
            EXPECT_EQ(work.missing(end), "");
            return;
        }
        EXPECT_NE(end.exitCode, 0) << end.messages;
        expectOneLine(work, end);
        EXPECT_EQ(work.halfWritten(mayLeaveTemporaryFiles), "");
    }

    static Support::TemporaryFolder* inputs;
};

Support::TemporaryFolder* ProgramFault::inputs = nullptr;

std::vector<Work> worksThatWrite(const std::string& folder) {
    std::vector<Work> works = Work::writing(folder);
    std::ranges::move(Work::converting(folder), std::back_inserter(works));
    return works;
}

#ifdef MOX_FAILING_MEMORY // and the other library too

std::vector<Work> allWorks(const std::string& folder) {
    std::vector<Work> works = worksThatWrite(folder);
    std::ranges::move(Work::reading(folder), std::back_inserter(works));
    return works;
}

// What each command makes at the least.
constexpr unsigned long LeastAllocations = 501;
constexpr unsigned long LeastWrites = 2;

Circumstances preloadedWith(const std::string& library) {
    Circumstances circumstances;
    circumstances.environment = {{"LD_PRELOAD", library}};
    circumstances.isOutputAFile = true;
    return circumstances;
}

unsigned long countedCalls(Work& work, Circumstances circumstances) {
    const Support::TemporaryFolder folder;
    circumstances.environment["MOX_TEST_CALLS"] = folder.path("count");
    (void)work.run(circumstances);
    return std::stoul(folder.read("count"));
}

// The places are spread evenly, from the first call to the last.
template <typename ExpectationT>
void failCalls(Work& work, Circumstances circumstances, const std::string& mode, unsigned long least,
               const ExpectationT& expectation) {
    const unsigned long last = countedCalls(work, circumstances);
    ASSERT_GE(last, least) << work.name() << " hardly makes any such call";
    const unsigned long count = std::min(Program::places(), last);
    for (unsigned long i = 0; i < count; ++i) {
        const std::string number = std::to_string(count == 1 ? last : 1 + i * (last - 1) / (count - 1));
        SCOPED_TRACE(work.name() + ", call " + number + mode + " of " + std::to_string(last));
        circumstances.environment["MOX_TEST_FAILING_CALL"] = number + mode;
        expectation(work.run(circumstances));
    }
}

TEST_F(ProgramFault, OneFailedAllocationEndsInOneLineAndNothingHalfWritten) {
    for (Work& work : allWorks(folder())) {
        failCalls(work, preloadedWith(MOX_FAILING_MEMORY), "", LeastAllocations,
                  [&](const End& end) { expectAllOrNothing(work, end); });
    }
}

TEST_F(ProgramFault, MemoryThatStaysOutEndsInOneLineAndNothingHalfWritten) {
    for (Work& work : allWorks(folder())) {
        // To remove a file takes memory too.
        failCalls(work, preloadedWith(MOX_FAILING_MEMORY), "+", LeastAllocations,
                  [&](const End& end) { expectAllOrNothing(work, end, true); });
    }
}

TEST_F(ProgramFault, OneFailedWriteEndsInOneLineAndNothingHalfWritten) {
    for (Work& work : allWorks(folder())) {
        for (const int error : {ENOSPC, EIO}) {
            Circumstances circumstances = preloadedWith(MOX_FAILING_WRITES);
            circumstances.environment["MOX_TEST_ERROR"] = std::to_string(error);
            failCalls(work, circumstances, "", LeastWrites,
                      [&](const End& end) { expectAllOrNothing(work, end); });
        }
    }
}

#endif

TEST_F(ProgramFault, FileThatCanNotGrowEndsInOneLineAndNothingHalfWritten) {
    for (Work& work : worksThatWrite(folder())) {
        // A model has the date of its save in it, which compresses differently each time.
        constexpr std::size_t MoreThanADate = 64;
        const std::size_t largest = work.largestFile() - MoreThanADate;
        const std::size_t count = Program::places();
        for (std::size_t i = 0; i < count; ++i) {
            const std::size_t size = i * largest / (count - 1);
            SCOPED_TRACE(work.name() + ", at " + std::to_string(size) + " bytes");
            Circumstances small;
            small.largestFile = size;
            const End end = work.run(small);
            EXPECT_NE(end.exitCode, 0);
            expectAllOrNothing(work, end);
        }
    }
}

class KilledProgram : public ProgramFault {
protected:
    // Kills at moments of chance between the start and somewhat after the usual end.
    static void kill(int signal, bool mayLeaveTemporaryFiles) {
        std::mt19937 random(20); // NOLINT(cert-msc51-cpp): the same moments in each run
        for (Work& work : worksThatWrite(folder())) {
            const auto begin = std::chrono::steady_clock::now();
            (void)work.run({});
            const auto usual = std::chrono::duration_cast<std::chrono::microseconds>(
                std::chrono::steady_clock::now() - begin);
            std::uniform_int_distribution<long> moment(0, usual.count());
            for (unsigned long i = 0; i < Program::places(); ++i) {
                const std::chrono::microseconds after(moment(random));
                SCOPED_TRACE(work.name() + ", signal after " + std::to_string(after.count()) +
                             " microseconds");
                Circumstances killed;
                killed.signal = {signal, after};
                const End end = work.run(killed);
                EXPECT_TRUE(end.signal == signal || end.exitCode == work.soundEnd().exitCode) << end.messages;
                EXPECT_EQ(work.halfWritten(mayLeaveTemporaryFiles), "");
            }
        }
    }
};

TEST_F(KilledProgram, AtAMomentOfChanceLeavesNothingHalfWrittenUnderAFinalName) {
    kill(SIGKILL, true);
}

TEST_F(KilledProgram, ThatIsAskedToEndLeavesNoTemporaryFilesEither) {
    kill(SIGTERM, false);
}

} // namespace
