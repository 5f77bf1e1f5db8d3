#pragma once

#include <mutex>
#include <string>

namespace Races {

/// A model that differs from others by a number in it, saved through the library and read through the reader.
class NumberedModel {
public:
    NumberedModel(std::string path, unsigned number) : path_(std::move(path)), number_(number) {}

    /// Saves the tree through every call but addArrayProperty(), and makes calls that fail.
    void saveTree() const;
    /// Saves the tree and arrays, of which one model at a time adds one.
    void saveTreeAndArrays(std::mutex& oneAtATime) const;

    /// Expects the tree to be in the file.
    void expectTree() const;
    /// Expects the tree and the arrays to be in the file.
    void expectTreeAndArrays() const;

private:
    std::string path_;
    unsigned number_;
};

} // namespace Races
