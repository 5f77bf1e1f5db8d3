// Sequences of calls of any kind, right and wrong, played through the library and through a plain model of it that
// knows what each call does. After every call both must have done the same, and each finished file must be what the
// plain model has.

#include "random/Support/Generator.h"
#include "random/Support/Session.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

namespace {

using RandomUse::Generator;
using RandomUse::Kind;
using RandomUse::Sequence;
using RandomUse::Session;

// How many sequences of each kind are played, and from which seed on.
constexpr const char* CountVariable = "MOXWRITER_RANDOM_SEQUENCES";
constexpr const char* FirstSeedVariable = "MOXWRITER_RANDOM_SEED";

unsigned numberIn(const char* variable, unsigned otherwise) {
    const char* const text = std::getenv(variable);
    return text != nullptr ? static_cast<unsigned>(std::strtoul(text, nullptr, 10)) : otherwise;
}

void reportDifference(unsigned seed, const Sequence& calls, Session& session) {
    const Sequence fewer = session.shortened(calls);
    ADD_FAILURE() << "seed " << seed << "; " << calls.size() << " calls, of which these are enough:\n"
                  << describe(fewer) << session.play(fewer);
}

void playSequences(Kind kind) {
    const unsigned first = numberIn(FirstSeedVariable, 1);
    const unsigned count = numberIn(CountVariable, MOXWRITER_RANDOM_SEQUENCES);
    Session session;
    for (unsigned seed = first; seed - first < count && !testing::Test::HasFailure(); ++seed) {
        const Sequence calls = Generator(seed, kind).sequence();
        if (!session.play(calls).empty()) {
            reportDifference(seed, calls, session);
        }
    }
}

} // namespace

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
