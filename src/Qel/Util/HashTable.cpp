#include <Qel/Util/HashTable.h>

#include <algorithm>

namespace QelUtil {

void HashTable::Add(std::size_t hash, std::uint32_t number) {
    if (2 * (count_ + 1) > slots_.size()) {
        Grow();
    }
    Place({static_cast<std::uint32_t>(hash), number});
    ++count_;
}

void HashTable::Grow() {
    std::vector<Slot> former(std::max(SmallestSize, 2 * slots_.size()));
    former.swap(slots_);
    for (const Slot& slot : former) {
        if (slot.number != None) {
            Place(slot);
        }
    }
}

void HashTable::Place(const Slot& slot) {
    std::size_t place = Home(slot.hash);
    while (slots_[place].number != None) {
        place = Next(place);
    }
    slots_[place] = slot;
}

} // namespace QelUtil
