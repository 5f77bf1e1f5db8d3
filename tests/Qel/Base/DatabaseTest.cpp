#include <Qel/Base/Database.h>

#include <gtest/gtest.h>

#include <type_traits>

namespace {

static_assert(std::has_virtual_destructor_v<Qel::Base::Database>);

class CountingDatabase final : public Qel::Base::Database {
public:
    void close() override { ++closed; }

    int closed = 0;
};

TEST(BaseDatabase, CloseIsVirtualAndDoesNothingInTheBase) {
    Qel::Base::Database plain;
    EXPECT_NO_THROW(plain.close());
    CountingDatabase counting;
    static_cast<Qel::Base::Database&>(counting).close();
    EXPECT_EQ(counting.closed, 1);
}

} // namespace
