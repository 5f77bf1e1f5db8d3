#include <Qel/Mox/Shape.h>

#include <Qel/Mox/Format.h>

#include <utility>

namespace QelMox {

Shape::Shape(std::string name) : Node(std::move(name)) {}

std::string Shape::GetTypeName() const {
    return std::string(Format::ShapeType);
}

std::string Shape::GetVersion() const {
    return std::string(Format::ShapeVersion);
}

const Material& Shape::GetMaterial() const {
    static const Material defaultMaterial{std::string()};
    return material_ != nullptr ? *material_ : defaultMaterial;
}

Material& Shape::GetMaterial() {
    if (material_ == nullptr) {
        material_ = std::make_unique<Material>(std::string());
    }
    return *material_;
}

} // namespace QelMox
