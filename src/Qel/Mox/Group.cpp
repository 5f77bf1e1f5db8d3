#include <Qel/Mox/Group.h>

#include <Qel/Exception/Throw.h>
#include <Qel/Mox/Format.h>

#include <algorithm>
#include <utility>

namespace QelMox {

Group::Group(std::string groupName, QelUtil::AttributeList groupAttributes, unsigned char kind)
    : Node(std::move(groupName)), attributes(std::move(groupAttributes)), groupKind(kind) {}

std::string Group::GetTypeName() const {
    return std::string(Format::GroupType);
}

std::string Group::GetVersion() const {
    return std::string(Format::GroupVersion);
}

void Group::SetTranslation(const std::vector<float>& values) {
    if (values.size() != translation.size()) {
        QEL_THROW(Qel::Exception::InvalidArguments("invalid array size"));
    }
    std::ranges::copy(values, translation.begin());
}

void Group::SetRotation(const std::vector<float>& values) {
    if (values.size() != rotation.size()) {
        QEL_THROW(Qel::Exception::InvalidArguments("invalid array size"));
    }
    std::ranges::copy(values, rotation.begin());
}

void Group::SetScale(const std::vector<float>& values) {
    if (values.size() != scale.size()) {
        QEL_THROW(Qel::Exception::InvalidArguments("invalid array size"));
    }
    std::ranges::copy(values, scale.begin());
}

} // namespace QelMox
