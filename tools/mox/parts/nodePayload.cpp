#include "nodePayload.h"

#include "PackedGeometry.h"
#include "toAttributeList.h"

#include <Qel/Mox/Format.h>
#include <Qel/Mox/Group.h>
#include <Qel/Mox/NodeSets.h>
#include <Qel/Mox/Shape.h>

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace MoxTool {

namespace {

using QelUtil::AttributeValue;

template <std::size_t Count>
std::vector<float> listOf(const std::array<float, Count>& values) {
    return {values.begin(), values.end()};
}

std::unique_ptr<QelMox::Node> groupPayload(const MoxReader::Group& group, const std::string& name) {
    auto payload = std::make_unique<QelMox::Group>(name, toAttributeList(group.attributes), group.kind);
    payload->SetTranslation(listOf(group.translation));
    payload->SetRotation(listOf(group.rotation));
    payload->SetScale(listOf(group.scale));
    return payload;
}

bool areSame(std::span<const float> left, std::span<const float> right) {
    return std::ranges::equal(left, right, [](float a, float b) {
        return std::bit_cast<std::uint32_t>(a) == std::bit_cast<std::uint32_t>(b);
    });
}

bool areSame(float left, float right) {
    return areSame(std::span(&left, 1), std::span(&right, 1));
}

bool isSame(const AttributeValue& left, const AttributeValue& right) {
    if (left.kind != right.kind) {
        return false;
    }
    switch (left.kind) {
    case AttributeValue::Integer:
        return left.integer == right.integer;
    case AttributeValue::Float:
        return areSame(left.real, right.real);
    case AttributeValue::Double:
        return std::bit_cast<std::uint64_t>(left.longReal) == std::bit_cast<std::uint64_t>(right.longReal);
    case AttributeValue::Text:
        break;
    }
    return left.text == right.text;
}

bool areSame(const QelUtil::AttributeList& left, const QelUtil::AttributeList& right) {
    return std::ranges::equal(left, right, [](const auto& a, const auto& b) {
        return a.first == b.first && isSame(a.second, b.second);
    });
}

// The fourth value of the emissive colour can be any bits.
bool isSameMaterial(const QelMox::Material& left, const MoxReader::Material& right) {
    return areSame(left.GetDiffuse(), right.diffuse) && areSame(left.GetSpecular(), right.specular) &&
           areSame(std::span(left.GetEmissive()).first(3), std::span(right.emissive).first(3)) &&
           areSame(left.GetAmbient(), right.ambient) && areSame(left.GetTransparency(), right.transparency) &&
           areSame(left.GetShininess(), right.shininess);
}

// A shape with the appearance that all have at first needs no material of its own.
std::unique_ptr<QelMox::Node> shapePayload(const MoxReader::Material& material, const std::string& name) {
    auto payload = std::make_unique<QelMox::Shape>(name);
    const QelMox::Shape& initial = *payload;
    const bool isInitial = isSameMaterial(initial.GetMaterial(), material) &&
                           areSame(initial.GetMaterial().GetEmissive(), material.emissive);
    if (!isInitial) {
        QelMox::Material& own = payload->GetMaterial();
        own.SetColors(material.diffuse, material.specular, material.emissive, material.ambient);
        own.SetTransparency(material.transparency);
        own.SetShininess(material.shininess);
    }
    return payload;
}

std::string groupDifference(const QelMox::Group& payload, const MoxReader::Group& group) {
    if (!areSame(payload.GetTranslation(), group.translation) ||
        !areSame(payload.GetRotation(), group.rotation) || !areSame(payload.GetScale(), group.scale)) {
        return "another transform";
    }
    if (payload.GetGroupKind() != group.kind) {
        return "another mark";
    }
    return areSame(payload.GetAttributes(), toAttributeList(group.attributes)) ? "" : "other attributes";
}

} // namespace

std::unique_ptr<QelMox::Node> nodePayload(const MoxReader::Node& node, const std::string& name) {
    if (node.group() != nullptr) {
        return groupPayload(*node.group(), name);
    }
    if (node.shape() != nullptr) {
        return shapePayload(node.shape()->material, name);
    }
    if (node.geometry() != nullptr) {
        return std::make_unique<PackedGeometry>(name);
    }
    if (node.nodeSets() != nullptr) {
        return std::make_unique<QelMox::NodeSets>(name);
    }
    return node.typeName.empty() ? nullptr : std::make_unique<QelMox::Node>(name);
}

std::string nodeDifference(const QelMox::Node& payload, const MoxReader::Node& node) {
    if (node.group() != nullptr) {
        return groupDifference(static_cast<const QelMox::Group&>(payload), *node.group());
    }
    if (node.shape() != nullptr) {
        const auto& shape = static_cast<const QelMox::Shape&>(payload);
        return isSameMaterial(shape.GetMaterial(), node.shape()->material) ? "" : "another material";
    }
    return node.nodeSets() != nullptr ? "other node sets" : "";
}

} // namespace MoxTool
