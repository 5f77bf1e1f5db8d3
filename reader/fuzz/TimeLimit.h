#pragma once

#include <ctime>

namespace MoxFuzz {

/// Ends the process, as a find, if the work of one input took more than a second of the processor, which the machine's
/// other work does not lengthen. What does not end at all is left to -timeout.
class TimeLimit {
public:
    TimeLimit() = default;
    TimeLimit(const TimeLimit&) = delete;
    TimeLimit& operator=(const TimeLimit&) = delete;
    ~TimeLimit();

private:
    std::clock_t start_ = std::clock();
};

} // namespace MoxFuzz
