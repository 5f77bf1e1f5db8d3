#pragma once

#include "MoxReader/Source.h"

#include <span>

namespace MoxFuzz {

/// Bytes of the caller, without a copy; they must outlive the source.
class SpanSource : public MoxReader::Source {
public:
    explicit SpanSource(std::span<const std::uint8_t> bytes) : bytes_(bytes) {}

    std::uint64_t size() const override { return bytes_.size(); }

protected:
    void readInside(std::uint64_t offset, std::span<std::uint8_t> target) override;

private:
    std::span<const std::uint8_t> bytes_;
};

} // namespace MoxFuzz
