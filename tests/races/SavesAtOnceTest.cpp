// Models on several threads at once, each used by one thread.

#include "Support/EnvironmentGuard.h"
#include "Support/TemporaryFolder.h"
#include "races/Support/NumberedModel.h"
#include "races/Support/atOnce.h"

#include <gtest/gtest.h>

#include <mutex>
#include <string>

namespace {

using Races::atOnce;
using Races::NumberedModel;

constexpr unsigned Rounds = 20;

class SavesAtOnce : public testing::Test {
protected:
    NumberedModel model(unsigned number) const {
        return NumberedModel(folder.path(std::to_string(number) + ".mox"), number);
    }

    void saveTreesAtOnce(unsigned threads) const {
        atOnce(threads, [&](unsigned number) {
            for (unsigned round = 0; round < Rounds; ++round) {
                model(number).saveTree();
            }
        });
        for (unsigned number = 0; number < threads; ++number) {
            model(number).expectTree();
        }
    }

    Support::TemporaryFolder folder;
};

} // namespace

TEST_F(SavesAtOnce, TwoModelsTakeAllCallsButArraysOnTwoThreads) {
    saveTreesAtOnce(2);
}

TEST_F(SavesAtOnce, BlocksOfASizeFromTheEnvironmentAreFilledOnFourThreads) {
    const Support::EnvironmentGuard blockSize(Support::BlockSizeVariable, "500");
    saveTreesAtOnce(4);
}

TEST_F(SavesAtOnce, ArraysAreAddedOneAtATimeWhileOtherModelsGrowAndClose) {
    std::mutex oneAtATime;
    constexpr unsigned threads = 3;
    atOnce(threads, [&](unsigned number) {
        for (unsigned round = 0; round < Rounds; ++round) {
            model(number).saveTreeAndArrays(oneAtATime);
        }
    });
    for (unsigned number = 0; number < threads; ++number) {
        model(number).expectTreeAndArrays();
    }
}
