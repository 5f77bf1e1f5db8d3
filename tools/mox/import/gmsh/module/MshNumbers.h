#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
#include <istream>
#include <stdexcept>
#include <type_traits>

namespace MoxTool {

/// Reads the numbers of a section of a Gmsh mesh file, which are words in one kind of file and bytes in the
/// other.
class MshNumbers {
public:
    /// How the numbers are written in the file.
    enum class Form { Words, Bytes, SwappedBytes };

    /// @param input Positioned before the first number; must outlive this object.
    MshNumbers(std::istream& input, Form form) : input_(input), form_(form) {}

    bool areWords() const { return form_ == Form::Words; }

    /// The next number.
    /// @throws std::runtime_error if there is none.
    template <typename Number>
    Number next() {
        Number value{};
        if (areWords()) {
            input_ >> value;
        } else {
            value = nextBytes<Number>();
        }
        if (!input_) {
            throw std::runtime_error("a number is missing or wrong");
        }
        return value;
    }

    template <typename Number>
    void skip(std::size_t count) {
        for (std::size_t i = 0; i < count; ++i) {
            next<Number>();
        }
    }

private:
    template <typename Number>
    Number nextBytes() {
        static_assert(std::is_trivially_copyable_v<Number>);
        std::array<char, sizeof(Number)> bytes{};
        input_.read(bytes.data(), bytes.size());
        if (form_ == Form::SwappedBytes) {
            std::reverse(bytes.begin(), bytes.end());
        }
        Number value{};
        std::memcpy(&value, bytes.data(), bytes.size());
        return value;
    }

    std::istream& input_;
    Form form_;
};

} // namespace MoxTool
