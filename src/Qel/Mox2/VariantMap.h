#pragma once

#include <map>
#include <utility>
#include <variant>

namespace Qel::Mox2 {

/// An ordered map of variants that is copied value by value, so that memory can run out halfway without harm.
///
/// Some standard libraries assume that a variant of texts and vectors always holds a value, and destroy a
/// value that is not there when copying such a variant fails. Here a copied variant first holds a number and
/// then gets its value, which is complete before the number is destroyed.
template <typename Key, typename VariantT>
class VariantMap : public std::map<Key, VariantT> {
public:
    using std::map<Key, VariantT>::map;

    VariantMap() = default;
    VariantMap(const VariantMap& other) : std::map<Key, VariantT>() {
        for (const auto& [key, value] : other) {
            appendCopy(key, value);
        }
    }
    VariantMap(VariantMap&&) noexcept = default;
    /// If memory runs out, this map stays as it was.
    VariantMap& operator=(const VariantMap& other) {
        if (this != &other) {
            VariantMap copy(other);
            this->swap(copy);
        }
        return *this;
    }
    VariantMap& operator=(VariantMap&&) noexcept = default;
    ~VariantMap() = default;

private:
    void appendCopy(const Key& key, const VariantT& value) {
        if (value.valueless_by_exception()) {
            this->emplace_hint(this->end(), key, value);
            return;
        }
        VariantT& copy = this->emplace_hint(this->end(), key, VariantT())->second;
        std::visit([&](const auto& held) { copy = held; }, value);
    }
};

} // namespace Qel::Mox2
