#include <Qel/Mox/Group.h>

#include <Qel/Exception/Throw.h>
#include <Qel/Mox/Format.h>

#include <algorithm>
#include <utility>

namespace QelMox {

Group::Group(std::string name, QelUtil::AttributeList attributes, unsigned char kind)
    : Node(std::move(name)), attributes_(std::move(attributes)), groupKind_(kind) {}

std::string Group::GetTypeName() const {
    return std::string(Format::GroupType);
}

std::string Group::GetVersion() const {
    return std::string(Format::GroupVersion);
}

void Group::SetTranslation(const std::vector<float>& values) {
    if (values.size() != translation_.size()) {
        QEL_THROW(Qel::Exception::InvalidArguments("invalid array size"));
    }
    std::ranges::copy(values, translation_.begin());
}

void Group::SetRotation(const std::vector<float>& values) {
    if (values.size() != rotation_.size()) {
        QEL_THROW(Qel::Exception::InvalidArguments("invalid array size"));
    }
    std::ranges::copy(values, rotation_.begin());
}

void Group::SetScale(const std::vector<float>& values) {
    if (values.size() != scale_.size()) {
        QEL_THROW(Qel::Exception::InvalidArguments("invalid array size"));
    }
    std::ranges::copy(values, scale_.begin());
}

} // namespace QelMox
