// Linked into a test program, this clears the library's variables from the environment, since the tests set
// them themselves.

#include "Support/EnvironmentGuard.h"

#include <gtest/gtest.h>

#include <optional>

namespace Support {

namespace {

class CleanEnvironment final : public testing::Environment {
public:
    void SetUp() override { withoutBlockSize_.emplace(BlockSizeVariable); }
    void TearDown() override { withoutBlockSize_.reset(); }

private:
    std::optional<EnvironmentGuard> withoutBlockSize_;
};

[[maybe_unused]] const testing::Environment* const registered =
    testing::AddGlobalTestEnvironment(new CleanEnvironment);

} // namespace

} // namespace Support
