#pragma once

#include <Qel/Mox/Node.h>
#include <Qel/Util/AttributeList.h>

#include <array>
#include <string>
#include <vector>

namespace QelMox {

/// A group of the assembly: a transform and attributes for all that stands below it.
class Group final : public Node {
public:
    /// A group that changes nothing: no translation, no rotation, scale 1.
    Group(std::string groupName, QelUtil::AttributeList groupAttributes, unsigned char kind = 0);

    std::string GetTypeName() const override;
    std::string GetVersion() const override;

    /// @throws Qel::Exception::InvalidArguments "invalid array size" unless there are 3 values.
    void SetTranslation(const std::vector<float>& values);
    /// The axis and the angle.
    /// @throws Qel::Exception::InvalidArguments "invalid array size" unless there are 4 values.
    void SetRotation(const std::vector<float>& values);
    /// @throws Qel::Exception::InvalidArguments "invalid array size" unless there are 3 values.
    void SetScale(const std::vector<float>& values);

    const std::array<float, 3>& GetTranslation() const { return translation; }
    const std::array<float, 4>& GetRotation() const { return rotation; }
    const std::array<float, 3>& GetScale() const { return scale; }
    const QelUtil::AttributeList& GetAttributes() const { return attributes; }
    QelUtil::AttributeList& GetAttributes() { return attributes; }
    /// 1 for a first node that was asked to be marked, 0 for all others.
    unsigned char GetGroupKind() const { return groupKind; }

private:
    std::array<float, 3> translation = {0.0F, 0.0F, 0.0F};
    std::array<float, 4> rotation = {0.0F, 0.0F, 1.0F, 0.0F};
    std::array<float, 3> scale = {1.0F, 1.0F, 1.0F};
    QelUtil::AttributeList attributes;
    unsigned char groupKind;
};

} // namespace QelMox
