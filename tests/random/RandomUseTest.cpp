// Sequences of calls of any kind, right and wrong, played through the library and through a plain model of it that
// knows what each call does. After every call both must have done the same, and each finished file must be what the
// plain model has.

#include "random/Support/Generator.h"
#include "random/Support/Trial.h"
#include "random/Support/outcomes.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <initializer_list>
#include <set>
#include <string>

namespace {

using RandomUse::Generator;
using RandomUse::Kind;
using RandomUse::Outcome;
using RandomUse::Sequence;
using RandomUse::Trial;

// How many sequences of each kind are played, and from which seed on.
constexpr const char* CountVariable = "MOXWRITER_RANDOM_SEQUENCES";
constexpr const char* FirstSeedVariable = "MOXWRITER_RANDOM_SEED";

unsigned numberIn(const char* variable, unsigned otherwise) {
    const char* const text = std::getenv(variable);
    return text != nullptr ? static_cast<unsigned>(std::strtoul(text, nullptr, 10)) : otherwise;
}

void reportDifference(unsigned seed, const Sequence& calls, Trial& trial) {
    const Sequence fewer = trial.shortened(calls);
    ADD_FAILURE() << "seed " << seed << "; " << calls.size() << " calls, of which these are enough:\n"
                  << describe(fewer) << trial.play(fewer);
}

void playSequences(Kind kind) {
    const unsigned first = numberIn(FirstSeedVariable, 1);
    const unsigned count = numberIn(CountVariable, MOXWRITER_RANDOM_SEQUENCES);
    Trial trial;
    for (unsigned seed = first; seed - first < count && !testing::Test::HasFailure(); ++seed) {
        const Sequence calls = Generator(seed, kind).sequence();
        if (!trial.play(calls).empty()) {
            reportDifference(seed, calls, trial);
        }
    }
}

std::string textOf(const Outcome& outcome) {
    return outcome.exception + " \"" + outcome.text + "\" from " + outcome.function;
}

std::set<std::string> failuresAmong(unsigned sequenceCount) {
    std::set<std::string> failures;
    for (const Kind kind : {Kind::Nodes, Kind::Data, Kind::Arrays, Kind::Everything}) {
        for (unsigned seed = 1; seed <= sequenceCount; ++seed) {
            RandomUse::PlainWorld world("", RandomUse::ModelCount);
            for (const RandomUse::Call& call : Generator(seed, kind).sequence()) {
                failures.insert(textOf(world.play(call)));
            }
        }
    }
    return failures;
}

} // namespace

// What no sequence meets, no sequence tests.
TEST(RandomUse, SequencesMeetEveryFailureOfACall) {
    using namespace RandomUse;
    const std::set<std::string> met = failuresAmong(300);
    for (const Outcome& failure : {fileNotOpen(),
                                   notInitialized(),
                                   notEmpty(),
                                   fileExists(),
                                   unableToOpen(""),
                                   unableToOpen("."),
                                   unableToOpen("missing/file.mox"),
                                   savingTheBufferFailed(),
                                   invalidRootType(),
                                   invalidNodeType(),
                                   currentNodeUnknown(),
                                   outOfBounds("NodeData"),
                                   outOfBounds("CurrentNodeId"),
                                   invalidStringPosition(),
                                   invalidProperties(),
                                   invalidPropertyType(),
                                   valueOfAnotherType(),
                                   invalidArraySize("Group", "SetTranslation"),
                                   invalidArraySize("Group", "SetRotation"),
                                   invalidArraySize("Group", "SetScale"),
                                   invalidArraySize("Material", "SetDiffuseColor"),
                                   invalidArraySize("Material", "SetSpecularColor"),
                                   invalidArraySize("Material", "SetEmissiveColor"),
                                   invalidArraySize("Material", "SetAmbientColor"),
                                   attributeRefused(),
                                   relativePath(),
                                   otherRoot(),
                                   noName(),
                                   noWidth(),
                                   negativeCount(),
                                   otherWidth(),
                                   noMemory()}) {
        EXPECT_TRUE(met.count(textOf(failure)) == 1) << textOf(failure);
    }
}

TEST(RandomUse, NodesAndPathsAreWhatThePlainModelHas) {
    playSequences(Kind::Nodes);
}

TEST(RandomUse, DataOfNodesAndAttributesAreWhatThePlainModelHas) {
    playSequences(Kind::Data);
}

TEST(RandomUse, ArraysAreWhatThePlainModelHas) {
    playSequences(Kind::Arrays);
}

TEST(RandomUse, EverythingAtOnceIsWhatThePlainModelHas) {
    playSequences(Kind::Everything);
}
