#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace QelUtil {

/// Finds numbers by the hash of what they stand for. The objects themselves stay with the user, who compares them:
/// numbers with equal hashes all come up. Nothing is ever removed.
class HashTable {
public:
    /// Calls `visit` with each number that was added under this hash, in no particular order. Only the low 32 bits
    /// of hashes count.
    template <typename Visitor>
    void Visit(std::size_t hash, Visitor visit) const {
        if (slots_.empty()) {
            return;
        }
        const auto sought = static_cast<std::uint32_t>(hash);
        for (std::size_t place = Home(sought); slots_[place].number != None; place = Next(place)) {
            if (slots_[place].hash == sought) {
                visit(slots_[place].number);
            }
        }
    }

    /// Adds a number, which must not be the largest one. If memory runs out, nothing changes.
    void Add(std::size_t hash, std::uint32_t number);

    /// How often Add() has succeeded.
    std::size_t GetCount() const { return count_; }

private:
    static constexpr std::uint32_t None = 0xFFFFFFFFU;
    static constexpr std::size_t SmallestSize = 16;

    struct Slot {
        std::uint32_t hash = 0;
        std::uint32_t number = None;
    };

    std::size_t Home(std::uint32_t hash) const { return hash & (slots_.size() - 1); }
    std::size_t Next(std::size_t place) const { return (place + 1) & (slots_.size() - 1); }
    void Grow();
    void Place(const Slot& slot);

    // A number is in the first slot from its home on, cyclically, that was free. The size is a power of two, and at
    // least half of the slots are free.
    std::vector<Slot> slots_;
    std::size_t count_ = 0;
};

} // namespace QelUtil
