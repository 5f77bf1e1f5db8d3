#include "DifferenceList.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <utility>

namespace MoxTool {

namespace {

using MoxReader::Attributes;
using MoxReader::AttributeValue;

constexpr std::array KindNames = {"integer", "float", "text", "double"};

Json jsonOf(std::uint32_t value) {
    return value;
}
Json jsonOf(float value) {
    return jsonNumber(value);
}
Json jsonOf(double value) {
    return jsonNumber(value);
}
Json jsonOf(const std::string& value) {
    return jsonText(value);
}
Json jsonOf(std::span<const float> values) {
    auto list = Json::array();
    for (const float value : values) {
        list.push_back(jsonNumber(value));
    }
    return values.size() == 1 ? list.front() : list;
}

Json plainJson(const AttributeValue& value) {
    return std::visit([](const auto& plain) { return jsonOf(plain); }, value);
}

Json jsonWithKind(const AttributeValue& value) {
    return {{KindNames.at(value.index()), plainJson(value)}};
}

std::string subject(const std::string& key) {
    return fmt::format("attribute \"{}\"", key);
}

} // namespace

void DifferenceList::moveTo(const MoxReader::Node* a, const MoxReader::Node* b,
                            const MoxReader::Dataset* dataset) {
    place_.idA = a == nullptr ? 0 : a->id;
    place_.idB = b == nullptr ? 0 : b->id;
    place_.dataset = dataset;
}

void DifferenceList::add(std::string what, std::optional<Json> a, std::optional<Json> b) {
    auto& added = differences_.emplace_back(place_);
    added.what = std::move(what);
    added.a = std::move(a);
    added.b = std::move(b);
}

void DifferenceList::compareTexts(std::string what, const std::string& a, const std::string& b) {
    if (a != b) {
        add(std::move(what), jsonText(a), jsonText(b));
    }
}

void DifferenceList::compareIntegers(std::string what, std::uint32_t a, std::uint32_t b) {
    if (a != b) {
        add(std::move(what), a, b);
    }
}

void DifferenceList::compareFlags(std::string what, bool a, bool b) {
    if (a != b) {
        add(std::move(what), a, b);
    }
}

void DifferenceList::compareFloats(std::string what, std::span<const float> a, std::span<const float> b) {
    if (!std::ranges::equal(a, b, [this](float x, float y) { return tolerance_.areEqual(x, y); })) {
        add(std::move(what), jsonOf(a), jsonOf(b));
    }
}

void DifferenceList::compareAttributes(const Attributes& a, const Attributes& b) {
    for (const auto& [key, valueA] : a) {
        const auto partner = b.find(key);
        if (partner == b.end()) {
            add(subject(key), plainJson(valueA), std::nullopt);
        } else {
            compareAttribute(key, valueA, partner->second);
        }
    }
    for (const auto& [key, valueB] : b) {
        if (!a.contains(key)) {
            add(subject(key), std::nullopt, plainJson(valueB));
        }
    }
}

// The kinds are shown only where they are what differs.
void DifferenceList::compareAttribute(const std::string& key, const AttributeValue& a,
                                      const AttributeValue& b) {
    if (areEqual(a, b)) {
        return;
    }
    if (a.index() == b.index()) {
        add(subject(key), plainJson(a), plainJson(b));
    } else {
        add(subject(key), jsonWithKind(a), jsonWithKind(b));
    }
}

bool DifferenceList::areEqual(const AttributeValue& a, const AttributeValue& b) const {
    if (a.index() != b.index()) {
        return false;
    }
    if (const auto* single = std::get_if<float>(&a)) {
        return tolerance_.areEqual(*single, std::get<float>(b));
    }
    if (const auto* wide = std::get_if<double>(&a)) {
        return tolerance_.areEqual(*wide, std::get<double>(b));
    }
    return a == b;
}

std::size_t DifferenceList::keepRoomForNumbers() {
    add("numbers", std::nullopt, std::nullopt);
    return differences_.size() - 1;
}

std::vector<Difference> DifferenceList::take() {
    std::erase_if(differences_, [](const Difference& each) { return !each.a && !each.b && !each.numbers; });
    return std::move(differences_);
}

} // namespace MoxTool
