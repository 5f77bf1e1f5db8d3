#pragma once

#include <Qel/Mox/Node.h>
#include <Qel/Util/AttributeList.h>

#include <array>
#include <string>
#include <vector>

namespace QelMox {

/// A group of the assembly: a transform and attributes for everything below it.
class Group final : public Node {
public:
    /// A group that changes nothing: no translation, no rotation, scale 1.
    Group(std::string name, QelUtil::AttributeList attributes, unsigned char kind = 0);

    std::string GetTypeName() const override;
    std::string GetVersion() const override;

    /// @throws Qel::Exception::InvalidArguments "invalid array size" unless there are 3 values.
    void SetTranslation(const std::vector<float>& values);
    /// The axis and the angle.
    /// @throws Qel::Exception::InvalidArguments "invalid array size" unless there are 4 values.
    void SetRotation(const std::vector<float>& values);
    /// @throws Qel::Exception::InvalidArguments "invalid array size" unless there are 3 values.
    void SetScale(const std::vector<float>& values);

    const std::array<float, 3>& GetTranslation() const { return translation_; }
    const std::array<float, 4>& GetRotation() const { return rotation_; }
    const std::array<float, 3>& GetScale() const { return scale_; }
    const QelUtil::AttributeList& GetAttributes() const { return attributes_; }
    QelUtil::AttributeList& GetAttributes() { return attributes_; }
    /// 1 for a first node that is to be marked, 0 for all other groups.
    unsigned char GetGroupKind() const { return groupKind_; }

private:
    std::array<float, 3> translation_ = {0.0F, 0.0F, 0.0F};
    std::array<float, 4> rotation_ = {0.0F, 0.0F, 1.0F, 0.0F};
    std::array<float, 3> scale_ = {1.0F, 1.0F, 1.0F};
    QelUtil::AttributeList attributes_;
    unsigned char groupKind_;
};

} // namespace QelMox
