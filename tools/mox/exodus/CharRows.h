#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace MoxTool {

/// Room for texts that a C library fills: an array of pointers to buffers of one size.
class CharRows {
public:
    /// @param length The length of the longest text, without its terminating zero.
    CharRows(std::size_t count, std::size_t length) : buffers_(count, std::vector<char>(length + 1)) {
        for (auto& buffer : buffers_) {
            pointers_.push_back(buffer.data());
        }
    }
    CharRows(const CharRows&) = delete;
    CharRows& operator=(const CharRows&) = delete;

    /// What the library takes. Valid for the lifetime of this object.
    char** data() { return pointers_.data(); }
    std::size_t size() const { return buffers_.size(); }
    /// The text of a row, up to its terminating zero.
    std::string operator[](std::size_t row) const { return buffers_[row].data(); }

    /// The texts of all rows.
    std::vector<std::string> strings() const {
        std::vector<std::string> result;
        for (const auto& buffer : buffers_) {
            result.emplace_back(buffer.data());
        }
        return result;
    }

private:
    std::vector<std::vector<char>> buffers_;
    std::vector<char*> pointers_;
};

} // namespace MoxTool
