#include <Qel/Base/Extractor.h>

#include <gtest/gtest.h>

#include <type_traits>

namespace {

using NumberExtractor = Qel::Base::Extractor<int, unsigned int>;
using VoidExtractor = Qel::Base::Extractor<int, void>;

static_assert(std::has_virtual_destructor_v<NumberExtractor>);
static_assert(std::is_same_v<decltype(&VoidExtractor::extract), void (VoidExtractor::*)(int&)>);

class Reading final : public NumberExtractor {
public:
    unsigned int extract(int& database) override { return static_cast<unsigned int>(database); }
};

TEST(BaseExtractor, ExtractIsVirtualAndGivesZeroInTheBase) {
    int database = 3;
    EXPECT_EQ(NumberExtractor().extract(database), 0U);
    Reading reading;
    EXPECT_EQ(static_cast<NumberExtractor&>(reading).extract(database), 3U);
}

TEST(BaseExtractor, ExtractWithoutResultChangesNothing) {
    int database = 3;
    VoidExtractor().extract(database);
    EXPECT_EQ(database, 3);
}

} // namespace
