#include "matchInOrder.h"

#include <limits>
#include <map>

namespace MoxTool {

namespace {

constexpr auto None = std::numeric_limits<std::size_t>::max();

/// Returns the places of a list by their keys, each once, and those of one key in ascending order.
class PlacesByKey {
public:
    explicit PlacesByKey(const std::vector<std::string_view>& keys) : behind_(keys.size(), None) {
        for (std::size_t place = keys.size(); place-- > 0;) {
            auto& front = fronts_.try_emplace(keys[place], None).first->second;
            behind_[place] = front;
            front = place;
        }
    }

    std::optional<std::size_t> take(std::string_view key) {
        const auto front = fronts_.find(key);
        if (front == fronts_.end() || front->second == None) {
            return std::nullopt;
        }
        const auto place = front->second;
        front->second = behind_[place];
        return place;
    }

private:
    std::map<std::string_view, std::size_t> fronts_; ///< The next place of each key, or None.
    std::vector<std::size_t> behind_;                ///< For each place the next one of its key, or None.
};

} // namespace

std::vector<Match> matchInOrder(const std::vector<std::string_view>& a,
                                const std::vector<std::string_view>& b) {
    PlacesByKey waiting(b);
    std::vector<Match> matches;
    std::vector<bool> isTaken(b.size());
    for (std::size_t i = 0; i < a.size(); ++i) {
        const auto partner = waiting.take(a[i]);
        matches.push_back({i, partner});
        if (partner) {
            isTaken[*partner] = true;
        }
    }
    for (std::size_t i = 0; i < b.size(); ++i) {
        if (!isTaken[i]) {
            matches.push_back({std::nullopt, i});
        }
    }
    return matches;
}

} // namespace MoxTool
