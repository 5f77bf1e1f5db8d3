#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace MoxTool {

/// Room for texts that a C library fills: an array of pointers to buffers of one size.
class CharRows {
public:
    /// @param length The length of the longest text, without its terminating zero.
    CharRows(std::size_t count, std::size_t length) : buffers(count, std::vector<char>(length + 1)) {
        for (auto& buffer : buffers) {
            pointers.push_back(buffer.data());
        }
    }
    CharRows(const CharRows&) = delete;
    CharRows& operator=(const CharRows&) = delete;

    /// What the library takes. Valid for the lifetime of this object.
    char** data() { return pointers.data(); }
    std::size_t size() const { return buffers.size(); }
    /// The text of a row, up to its terminating zero.
    std::string operator[](std::size_t row) const { return buffers[row].data(); }

    /// The texts of all rows.
    std::vector<std::string> strings() const {
        std::vector<std::string> result;
        for (const auto& buffer : buffers) {
            result.emplace_back(buffer.data());
        }
        return result;
    }

private:
    std::vector<std::vector<char>> buffers;
    std::vector<char*> pointers;
};

} // namespace MoxTool
