#include "compareProperties.h"

#include "matchInOrder.h"

#include <fmt/format.h>

#include <algorithm>

namespace MoxTool {

namespace {

using MoxReader::GlobalInformation;
using MoxReader::Group;
using MoxReader::Material;
using MoxReader::ModifierInfo;
using MoxReader::NodeSet;

struct Colour {
    const char* name;
    std::array<float, 4> Material::*value;
    std::size_t size;
};

constexpr std::array Colours = {
    Colour{"diffuse", &Material::diffuse, 4},
    Colour{"specular", &Material::specular, 4},
    Colour{"emissive", &Material::emissive, 3},
    Colour{"ambient", &Material::ambient, 4},
};

struct SaveText {
    const char* name;
    std::string ModifierInfo::*value;
};

constexpr SaveText Date = {"date", &ModifierInfo::date};
constexpr std::array SaveTexts = {
    SaveText{"source name", &ModifierInfo::sourceName},
    SaveText{"source version", &ModifierInfo::sourceVersion},
    SaveText{"format version", &ModifierInfo::formatVersion},
    SaveText{"computer", &ModifierInfo::computer},
    SaveText{"user", &ModifierInfo::user},
    SaveText{"comment", &ModifierInfo::comment},
};

std::vector<std::string_view> namesOf(const std::vector<NodeSet>& sets) {
    std::vector<std::string_view> names;
    names.reserve(sets.size());
    for (const auto& set : sets) {
        names.push_back(set.name);
    }
    return names;
}

std::string sizeText(const NodeSet& set) {
    return fmt::format("{} members", set.members.size());
}

void compareSets(DifferenceList& list, const NodeSet* a, const NodeSet* b) {
    const auto what = fmt::format("node set \"{}\"", (a != nullptr ? a : b)->name);
    if (b == nullptr) {
        return list.add(what, sizeText(*a), std::nullopt);
    }
    if (a == nullptr) {
        return list.add(what, std::nullopt, sizeText(*b));
    }
    if (a->members.size() != b->members.size()) {
        return list.add(what, sizeText(*a), sizeText(*b));
    }
    const auto [inA, inB] = std::ranges::mismatch(a->members, b->members);
    if (inA != a->members.end()) {
        list.add(fmt::format("{}, member {}", what, inA - a->members.begin()), *inA, *inB);
    }
}

void compareSave(DifferenceList& list, std::size_t number, const ModifierInfo& a, const ModifierInfo& b,
                 bool withDate) {
    const auto compare = [&](const SaveText& text) {
        list.compareTexts(fmt::format("save {}: {}", number, text.name), a.*text.value, b.*text.value);
    };
    std::ranges::for_each(SaveTexts, compare);
    if (withDate) {
        compare(Date);
    }
}

} // namespace

void compareGroups(DifferenceList& list, const Group& a, const Group& b) {
    list.compareFloats("translation", a.translation, b.translation);
    list.compareFloats("rotation", a.rotation, b.rotation);
    list.compareFloats("scale", a.scale, b.scale);
    list.compareIntegers("kind", a.kind, b.kind);
    list.compareAttributes(a.attributes, b.attributes);
}

void compareMaterials(DifferenceList& list, const Material& a, const Material& b) {
    for (const auto& colour : Colours) {
        list.compareFloats(fmt::format("material: {}", colour.name),
                           std::span(a.*colour.value).first(colour.size),
                           std::span(b.*colour.value).first(colour.size));
    }
    list.compareFloats("material: transparency", {&a.transparency, 1}, {&b.transparency, 1});
    list.compareFloats("material: shininess", {&a.shininess, 1}, {&b.shininess, 1});
    list.compareIntegers("material: flag", a.flag, b.flag);
}

void compareNodeSets(DifferenceList& list, const std::vector<NodeSet>& a, const std::vector<NodeSet>& b) {
    for (const auto& match : matchInOrder(namesOf(a), namesOf(b))) {
        compareSets(list, match.a ? &a[*match.a] : nullptr, match.b ? &b[*match.b] : nullptr);
    }
}

void compareSaves(DifferenceList& list, const GlobalInformation& a, const GlobalInformation& b,
                  bool withDate) {
    const auto countA = a.modifiers.size();
    const auto countB = b.modifiers.size();
    list.compareIntegers("saves", static_cast<std::uint32_t>(countA), static_cast<std::uint32_t>(countB));
    for (std::size_t i = 0; i < std::min(countA, countB); ++i) {
        compareSave(list, i + 1, a.modifiers[i], b.modifiers[i], withDate);
    }
}

} // namespace MoxTool
