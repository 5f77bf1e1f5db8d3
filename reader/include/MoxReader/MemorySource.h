#pragma once

#include "MoxReader/Source.h"

#include <vector>

namespace MoxReader {

/// Bytes in memory, which the source owns.
class MemorySource : public Source {
public:
    /// Takes the bytes over.
    explicit MemorySource(std::vector<std::uint8_t> bytes);

    std::uint64_t size() const override { return bytes_.size(); }

protected:
    void readInside(std::uint64_t offset, std::span<std::uint8_t> target) override;

private:
    std::vector<std::uint8_t> bytes_;
};

} // namespace MoxReader
