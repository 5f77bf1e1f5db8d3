#include <Qel/Base/Modifier.h>

#include <gtest/gtest.h>

#include <type_traits>

namespace {

using Modifier = Qel::Base::Modifier<int>;

static_assert(std::has_virtual_destructor_v<Modifier>);

class Doubling final : public Modifier {
public:
    void update(int& database) override { database *= 2; }
};

TEST(BaseModifier, UpdateIsVirtualAndDoesNothingInTheBase) {
    int database = 3;
    Modifier().update(database);
    EXPECT_EQ(database, 3);
    Doubling doubling;
    static_cast<Modifier&>(doubling).update(database);
    EXPECT_EQ(database, 6);
}

} // namespace
