#include "random/Support/values.h"

#include <stdexcept>
#include <type_traits>

namespace RandomUse {

namespace {

// A copy of a copy, which both replaced what they had.
template <typename Value>
Value copied(const Value& value, const Value& former) {
    Value first(former);
    first = value;
    Value second(first);
    second = *&second;
    return second;
}

template <typename Target, typename Key, typename Value>
void set(Target& target, const Key& key, const Value& value) {
    if constexpr (std::is_same_v<Value, CText>) {
        target.set(key, value.text.c_str());
    } else {
        target.set(key, value);
    }
}

} // namespace

Qel::Mox2::Attributes attributesOf(const AttributePairs& pairs) {
    Qel::Mox2::Attributes attributes;
    for (const auto& [key, value] : pairs) {
        std::visit([&attributes, &attribute = key](const auto& held) { set(attributes, attribute, held); },
                   value);
    }
    Qel::Mox2::Attributes former;
    former.set("former", 1);
    return copied(attributes, former);
}

Qel::Mox2::NodeProperties propertiesOf(const PropertyPairs& pairs) {
    Qel::Mox2::NodeProperties properties;
    for (const auto& [key, value] : pairs) {
        const auto property = static_cast<Qel::Mox2::PropertyType>(key);
        std::visit([&](const auto& held) { set(properties, property, held); }, value);
    }
    Qel::Mox2::NodeProperties former;
    former.set(Qel::Mox2::Translation, 1);
    return copied(properties, former);
}

Qel::Mox2::Step stepOf(const StepUse& step) {
    return {step.name, attributesOf(step.attributes)};
}

Qel::Mox2::StepList stepListOf(const std::vector<StepUse>& steps) {
    Qel::Mox2::StepList list(steps.size());
    for (std::size_t i = 0; i < steps.size(); ++i) {
        list.set(i, stepOf(steps[i]));
    }
    for (std::size_t i = 0; i < steps.size(); ++i) {
        if (list[i].name != steps[i].name) {
            throw std::logic_error("a StepList has lost a name");
        }
    }
    return copied(list, Qel::Mox2::StepList(steps.size() % 2));
}

} // namespace RandomUse
