#pragma once

#include <cstdint>
#include <memory>
#include <string>

namespace QelMox {

/// Describes a flat array of 4-byte values whose numbers are elsewhere.
class NumericArray final {
public:
    // Kept though nothing calls it; see docs/oddities.md.
    struct Descriptor {
        int number = 0;
        std::string text;
    };

    virtual const std::uint8_t& GetWidth() const { return width; }
    /// The number of values.
    // Kept though nothing calls it; see docs/oddities.md.
    virtual std::uint64_t GetCount() const { return sizeInBytes >> 2U; }

    /// The caller's numbers. Not owned, and possibly gone once the call that gave them has returned.
    const void* data = nullptr;
    std::uint64_t sizeInBytes = 0;
    /// The number of values of one element.
    std::uint8_t width = 1;
    std::uint8_t widthFlag = 0;
    std::unique_ptr<Descriptor> descriptor;
    /// The type of the values, as numbered in Qel::Type::Traits.
    std::uint32_t elementTag = 0;
    // The fields below are in the file and always have these values.
    bool boolA = false;
    bool boolB = false;
    float floatA = 0.0F;
    float floatB = 0.0F;
    bool boolC = false;
};

} // namespace QelMox
