#include "TimeLimit.h"

#include <cstdio>
#include <cstdlib>

namespace MoxFuzz {

TimeLimit::~TimeLimit() {
    const auto took = std::clock() - start_;
    if (took > CLOCKS_PER_SEC) {
        std::fprintf(stderr, "This input took %.1f s.\n", static_cast<double>(took) / CLOCKS_PER_SEC);
        std::abort();
    }
}

} // namespace MoxFuzz
