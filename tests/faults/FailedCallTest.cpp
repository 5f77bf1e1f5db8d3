// Every call of the file system fails once, or from some moment on, and what the library then reports and leaves is
// what its headers say.

#include "Support/Bytes.h"
#include "Support/CaseStride.h"
#include "Support/TemporaryFolder.h"
#include "api/Support/Failures.h"
#include "api/Support/MeantLeak.h"
#include "faults/FailingFiles.h"
#include "faults/SavedSteps.h"
#include "faults/checkFile.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace Faults {

namespace {

using Call = FailingFiles::Call;
using Mode = FailingFiles::Mode;
using Fault = FailingFiles::Fault;

constexpr auto FaultStride = static_cast<unsigned int>(CaseStride);

class FailedCall : public testing::Test {
protected:
    // Saves without any failure.
    Support::ByteVector soundBytes() {
        SavedSteps good;
        good.build(path);
        EXPECT_TRUE(good.close());
        EXPECT_EQ(good.thrown().size(), 0U);
        EXPECT_EQ(checkFile(path), CheckResult::Whole);
        return Support::bytesOf(path);
    }

    // Saves while calls fail as planned, and once more without any failure, through the same model if that can be
    // closed.
    void saveWithFailure(const FailingFiles::Plan& plan) {
        const Api::MeantLeak ofAModelThatCannotBeClosed;
        steps.emplace();
        FailingFiles::arm(plan);
        steps->build(path);
        isClosed = steps->close();
        FailingFiles::disarm();
        thrown = steps->thrown();
        if (isClosed || steps->close()) {
            expectTheNextSaveToBeSound();
        } else {
            steps->abandon();
        }
    }

    void expectTheNextSaveToBeSound() {
        const std::string next = folder.path("next.mox");
        steps->build(next);
        EXPECT_TRUE(steps->close());
        EXPECT_TRUE(Support::bytesOf(next) == sound);
    }

    // Whatever differs from the sound file must not be taken for whole.
    void expectNoSilentDamage() {
        if (Support::bytesOf(path) != sound) {
            EXPECT_EQ(checkFile(path), CheckResult::Damaged);
        }
    }

    // Lets the first, second, third, ... call fail, until there is none that could.
    template <typename ExpectationT>
    void failEach(Call call, Mode mode, Fault fault, unsigned int least, const ExpectationT& expectation) {
        unsigned int number = 1;
        for (;; number += FaultStride) {
            SCOPED_TRACE("call " + std::to_string(number));
            saveWithFailure({call, number, mode, fault});
            if (!FailingFiles::hasFailed() || HasFailure()) {
                break;
            }
            expectation();
        }
        EXPECT_GT(number, least) << "hardly any call was made";
    }

    void expectNothingThrown() {
        for (const SavedSteps::Thrown& one : thrown) {
            ADD_FAILURE() << one.call << " threw";
        }
        EXPECT_TRUE(isClosed);
    }

    void expectSavingTheBufferFailed() {
        for (const SavedSteps::Thrown& one : thrown) {
            EXPECT_TRUE(
                Api::fails([&] { std::rethrow_exception(one.failure); }, Api::savingTheBufferFailed()))
                << one.call;
        }
    }

    Support::TemporaryFolder folder;
    const std::string path = folder.path("saved.mox");
    const Support::ByteVector sound = soundBytes();
    std::optional<SavedSteps> steps;
    std::vector<SavedSteps::Thrown> thrown; ///< Up to the first close.
    bool isClosed = false;                  ///< By the first close.
};

} // namespace

TEST_F(FailedCall, OpenThatFailsIsReportedAndTheModelTakesNodesButNoFullBlock) {
    std::filesystem::remove(path);
    saveWithFailure({Call::Open, 1, Mode::Once, Fault::Nothing});
    ASSERT_GT(thrown.size(), 1U);
    EXPECT_EQ(thrown[0].call, "saveTo");
    const std::string text = "Unable to open file \"" + path + "\"";
    EXPECT_TRUE(Api::fails([&] { std::rethrow_exception(thrown[0].failure); },
                           Api::failure<Qel::Exception::MiscelleneousException>(2, text, "Qel/Tnf/TnFile",
                                                                                "QelTnf::TnFile::OpenFile")));
    // Blocks that are full have nowhere to go.
    thrown.erase(thrown.begin());
    expectSavingTheBufferFailed();
    EXPECT_TRUE(isClosed);
    EXPECT_FALSE(std::filesystem::exists(path));
}

TEST_F(FailedCall, WriteThatFailsOnceIsNotReportedButTheFileIsNotWhole) {
    for (const Fault fault : {Fault::Nothing, Fault::Half}) {
        failEach(Call::Write, Mode::Once, fault, 2 + SavedSteps::Arrays / SavedSteps::ArraysInABlock, [&] {
            expectNothingThrown();
            expectNoSilentDamage();
        });
    }
}

TEST_F(FailedCall, DiskThatStaysFullIsNotReportedButTheFileIsNotWhole) {
    for (const Fault fault : {Fault::Nothing, Fault::Half}) {
        failEach(Call::Write, Mode::FromThenOn, fault, 2 + SavedSteps::Arrays / SavedSteps::ArraysInABlock,
                 [&] {
                     expectNothingThrown();
                     expectNoSilentDamage();
                 });
    }
}

// A signal breaks a write off after its first half.
TEST_F(FailedCall, WriteThatIsBrokenOffIsNotReportedButTheFileIsNotWhole) {
    constexpr unsigned int header = 1;
    constexpr unsigned int block = 10;
    for (const unsigned int number : {header, block}) {
        SCOPED_TRACE("write " + std::to_string(number));
        saveWithFailure({Call::Write, number, Mode::Once, Fault::BrokenOff});
        EXPECT_TRUE(FailingFiles::hasFailed());
        expectNothingThrown();
        EXPECT_EQ(checkFile(path), CheckResult::Damaged);
    }
}

TEST_F(FailedCall, SeekThatFailsOnceIsReportedOrTheFileIsNotWhole) {
    failEach(Call::Seek, Mode::Once, Fault::Nothing, SavedSteps::Arrays / SavedSteps::ArraysInABlock, [&] {
        expectSavingTheBufferFailed();
        expectNoSilentDamage();
    });
}

TEST_F(FailedCall, FileThatCanNoLongerBePositionedIsReportedOrNotWhole) {
    failEach(Call::Seek, Mode::FromThenOn, Fault::Nothing, SavedSteps::Arrays / SavedSteps::ArraysInABlock,
             [&] {
                 expectSavingTheBufferFailed();
                 expectNoSilentDamage();
             });
}

TEST_F(FailedCall, CloseThatFailsIsNotReported) {
    saveWithFailure({Call::Close, 1, Mode::Once, Fault::Nothing});
    EXPECT_TRUE(FailingFiles::hasFailed());
    expectNothingThrown();
    EXPECT_EQ(Support::bytesOf(path), sound);
}

} // namespace Faults
