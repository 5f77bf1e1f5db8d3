#pragma once

#include <array>
#include <charconv>
#include <cstdint>
#include <string>

namespace Workloads {

/// Names such as "part 17", made in memory that is used again.
class NumberedName {
public:
    explicit NumberedName(const char* prefix) : text_(prefix), prefixLength_(text_.size()) {}

    /// Valid until the next call.
    const std::string& operator()(std::uint64_t number) {
        std::array<char, 20> digits{};
        const auto end = std::to_chars(digits.begin(), digits.end(), number).ptr;
        text_.resize(prefixLength_);
        text_.append(digits.begin(), end);
        return text_;
    }

private:
    std::string text_;
    std::size_t prefixLength_;
};

} // namespace Workloads
