#include "DeflateBits.h"

#include <array>
#include <map>
#include <stdexcept>
#include <utility>

namespace {

constexpr std::size_t HeaderBits = 16;
constexpr unsigned EndOfBlock = 256;
constexpr unsigned FirstLength = 257;

/// Extra bits after the symbols of lengths, from 257 on, and after those of distances, from 0 on.
constexpr std::array<std::uint8_t, 29> LengthExtra = {0, 0, 0, 0, 0, 0, 0, 0, 1, 1, 1, 1, 2, 2, 2,
                                                      2, 3, 3, 3, 3, 4, 4, 4, 4, 5, 5, 5, 5, 0};
constexpr std::array<std::uint8_t, 30> DistanceExtra = {0, 0, 0, 0, 1, 1, 2, 2,  3,  3,  4,  4,  5,  5,  6,
                                                        6, 7, 7, 8, 8, 9, 9, 10, 10, 11, 11, 12, 12, 13, 13};
constexpr std::array<std::uint8_t, 19> OrderOfCodeLengths = {16, 17, 18, 0, 8,  7, 9,  6, 10, 5,
                                                             11, 4,  12, 3, 13, 2, 14, 1, 15};

using Lengths = std::vector<std::uint8_t>; ///< The code lengths of the symbols 0, 1 and so on; 0 for none.

/// Symbols by the length and the bits of their codes.
class Code {
public:
    explicit Code(const Lengths& lengths) {
        unsigned code = 0;
        for (unsigned length = 1; length <= 15; ++length) {
            for (unsigned symbol = 0; symbol < lengths.size(); ++symbol) {
                if (lengths[symbol] == length) {
                    symbols_[{length, code++}] = symbol;
                }
            }
            code <<= 1;
        }
    }
    /// @return null if there is no such code.
    const unsigned* find(unsigned length, unsigned code) const {
        const auto found = symbols_.find({length, code});
        return found == symbols_.end() ? nullptr : &found->second;
    }

private:
    std::map<std::pair<unsigned, unsigned>, unsigned> symbols_;
};

class Tracer {
public:
    explicit Tracer(std::span<const std::uint8_t> stream)
        : bytes_(stream), meanings_(8 * stream.size(), DeflateBit::Frame) {}

    std::vector<DeflateBit> run() {
        bool isLast = false;
        while (!isLast) {
            isLast = take(1, DeflateBit::Block) == 1;
            traceBlock(take(2, DeflateBit::Block));
        }
        while (position_ % 8 != 0) {
            take(1, DeflateBit::Padding);
        }
        return std::move(meanings_);
    }

private:
    unsigned take(unsigned count, DeflateBit meaning) {
        unsigned value = 0;
        for (unsigned i = 0; i < count; ++i, ++position_) {
            if (position_ >= meanings_.size()) {
                throw std::runtime_error("the zlib stream is not whole");
            }
            value |= (bytes_[position_ / 8] >> position_ % 8 & 1U) << i;
            meanings_[position_] = meaning;
        }
        return value;
    }

    unsigned takeSymbol(const Code& code, DeflateBit meaning) {
        unsigned bits = 0;
        for (unsigned length = 1; length <= 15; ++length) {
            bits = bits << 1 | take(1, meaning);
            if (const auto* symbol = code.find(length, bits)) {
                return *symbol;
            }
        }
        throw std::runtime_error("the zlib stream has an unknown code");
    }

    void traceBlock(unsigned kind) {
        if (kind == 1) {
            traceData(fixedLengths(), Lengths(DistanceExtra.size(), 5));
        } else if (kind == 2) {
            const auto symbols = FirstLength + take(5, DeflateBit::Block);
            const auto distances = 1 + take(5, DeflateBit::Block);
            const auto lengths = takeLengths(symbols + distances);
            const auto border = lengths.begin() + static_cast<std::ptrdiff_t>(symbols);
            traceData({lengths.begin(), border}, {border, lengths.end()});
        } else {
            throw std::runtime_error("the zlib stream has a stored block");
        }
    }

    static Lengths fixedLengths() {
        Lengths lengths(144, 8);
        lengths.resize(256, 9);
        lengths.resize(280, 7);
        lengths.resize(288, 8);
        return lengths;
    }

    Lengths takeLengths(std::size_t count) {
        const auto given = 4 + take(4, DeflateBit::Block);
        Lengths ofLengths(OrderOfCodeLengths.size());
        for (std::size_t i = 0; i < given; ++i) {
            ofLengths[OrderOfCodeLengths[i]] = static_cast<std::uint8_t>(take(3, DeflateBit::Block));
        }
        const Code code(ofLengths);
        Lengths lengths;
        while (lengths.size() < count) {
            const auto symbol = takeSymbol(code, DeflateBit::Block);
            if (symbol < 16) {
                lengths.push_back(static_cast<std::uint8_t>(symbol));
            } else if (symbol == 16) {
                lengths.resize(lengths.size() + 3 + take(2, DeflateBit::Block), lengths.back());
            } else {
                lengths.resize(lengths.size() + (symbol == 17 ? 3 + take(3, DeflateBit::Block)
                                                              : 11 + take(7, DeflateBit::Block)));
            }
        }
        return lengths;
    }

    void traceData(const Lengths& symbolLengths, const Lengths& distanceLengths) {
        const Code symbols(symbolLengths);
        const Code distances(distanceLengths);
        for (;;) {
            const auto symbol = takeSymbol(symbols, DeflateBit::Symbol);
            if (symbol == EndOfBlock) {
                return;
            }
            if (symbol < EndOfBlock) {
                continue;
            }
            take(LengthExtra.at(symbol - FirstLength), DeflateBit::Symbol);
            take(DistanceExtra.at(takeSymbol(distances, DeflateBit::Distance)), DeflateBit::Distance);
        }
    }

    std::span<const std::uint8_t> bytes_;
    std::vector<DeflateBit> meanings_;
    std::size_t position_ = HeaderBits;
};

} // namespace

std::vector<DeflateBit> deflateBits(std::span<const std::uint8_t> zlibStream) {
    return Tracer(zlibStream).run();
}
