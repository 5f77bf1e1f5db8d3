// Linked into a test program, this clears the library's variables from the environment, since the tests set
// them themselves.

#include "Support/EnvironmentGuard.h"

#include <gtest/gtest.h>

#include <optional>

namespace Support {

namespace {

class CleanEnvironment final : public testing::Environment {
public:
    void SetUp() override { withoutBlockSize.emplace(BlockSizeVariable); }
    void TearDown() override { withoutBlockSize.reset(); }

private:
    std::optional<EnvironmentGuard> withoutBlockSize;
};

[[maybe_unused]] const testing::Environment* const registered =
    testing::AddGlobalTestEnvironment(new CleanEnvironment);

} // namespace

} // namespace Support
