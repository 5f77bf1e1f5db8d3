// Readers on several threads at once, each with an open file of its own.

#include "Support/TemporaryFolder.h"
#include "races/Support/NumberedModel.h"
#include "races/Support/atOnce.h"

#include <MoxReader/Error.h>
#include <MoxReader/File.h>

#include <gtest/gtest.h>

#include <mutex>
#include <string>

namespace {

using Races::atOnce;
using Races::NumberedModel;

constexpr unsigned Rounds = 10;
constexpr unsigned Threads = 4;

class ReadersAtOnce : public testing::Test {
protected:
    void SetUp() override {
        first.saveTreeAndArrays(oneAtATime);
        second.saveTreeAndArrays(oneAtATime);
    }

    Support::TemporaryFolder folder;
    std::mutex oneAtATime;
    NumberedModel first{folder.path("first.mox"), 1};
    NumberedModel second{folder.path("second.mox"), 2};
};

} // namespace

TEST_F(ReadersAtOnce, OneFileIsReadOnFourThreads) {
    atOnce(Threads, [&](unsigned) {
        for (unsigned round = 0; round < Rounds; ++round) {
            first.expectTreeAndArrays();
        }
    });
}

TEST_F(ReadersAtOnce, DifferentFilesAndOnesThatAreNoneAreReadOnFourThreads) {
    const std::string other = folder.write("other.mox", "no model");
    atOnce(Threads, [&](unsigned thread) {
        for (unsigned round = 0; round < Rounds; ++round) {
            ((thread + round) % 2 == 0 ? first : second).expectTreeAndArrays();
            EXPECT_THROW(MoxReader::File{other}, MoxReader::Error);
        }
    });
}

TEST_F(ReadersAtOnce, FilesAreReadWhileOthersAreSaved) {
    atOnce(Threads, [&](unsigned thread) {
        const NumberedModel third(folder.path(std::to_string(thread) + ".mox"), thread);
        for (unsigned round = 0; round < Rounds; ++round) {
            if (thread % 2 == 0) {
                third.saveTree();
            } else {
                first.expectTreeAndArrays();
            }
        }
    });
}
