#include "MoxReader/Attributes.h"

#include <cstddef>
#include <utility>
#include <vector>

namespace MoxReader {

namespace {

/// The lists of an attribute record, in file order.
struct Lists {
    std::vector<std::string> keys;
    std::vector<std::uint8_t> kinds;
    std::vector<std::uint32_t> integers;
    std::vector<float> floats;
    std::vector<double> doubles;
    std::vector<std::string> texts;
};

Lists readLists(StreamReader& stream) {
    Lists lists;
    lists.keys = stream.readStrings();
    lists.kinds = stream.readNumbers<std::uint8_t>();
    lists.integers = stream.readNumbers<std::uint32_t>();
    lists.floats = stream.readNumbers<float>();
    lists.doubles = stream.readNumbers<double>();
    lists.texts = stream.readStrings();
    return lists;
}

/// Hands out the elements of a list one by one.
template <class T>
class Dispenser {
public:
    explicit Dispenser(std::vector<T> list) : list_(std::move(list)) {}

    bool isEmpty() const { return used_ == list_.size(); }
    std::optional<AttributeValue> take() {
        if (isEmpty()) {
            return std::nullopt;
        }
        return std::move(list_[used_++]);
    }

private:
    std::vector<T> list_;
    std::size_t used_ = 0;
};

/// Pairs keys with values: each key takes the next element of the list of its kind.
std::optional<Attributes> join(Lists lists) {
    if (lists.keys.size() != lists.kinds.size()) {
        return std::nullopt;
    }
    Dispenser integers(std::move(lists.integers));
    Dispenser floats(std::move(lists.floats));
    Dispenser doubles(std::move(lists.doubles));
    Dispenser texts(std::move(lists.texts));
    const auto take = [&](std::uint8_t kind) -> std::optional<AttributeValue> {
        switch (kind) {
        case 0:
            return integers.take();
        case 1:
            return floats.take();
        case 2:
            return texts.take();
        case 3:
            return doubles.take();
        default:
            return std::nullopt;
        }
    };
    Attributes attributes;
    for (std::size_t i = 0; i < lists.keys.size(); ++i) {
        auto value = take(lists.kinds[i]);
        if (!value || !attributes.try_emplace(std::move(lists.keys[i]), std::move(*value)).second) {
            return std::nullopt;
        }
    }
    if (!integers.isEmpty() || !floats.isEmpty() || !doubles.isEmpty() || !texts.isEmpty()) {
        return std::nullopt;
    }
    return attributes;
}

} // namespace

Attributes readAttributes(StreamReader& stream) {
    const auto start = stream.place();
    auto attributes = join(readLists(stream));
    if (!attributes) {
        throw Error(ErrorCode::BadAttributes, start);
    }
    return std::move(*attributes);
}

} // namespace MoxReader
