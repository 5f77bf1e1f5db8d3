#include <Qel/Mox/Shape.h>

#include <Qel/Mox/Format.h>

#include <utility>

namespace QelMox {

Shape::Shape(std::string name) : Node(std::move(name)), material_(std::string()) {}

std::string Shape::GetTypeName() const {
    return std::string(Format::ShapeType);
}

std::string Shape::GetVersion() const {
    return std::string(Format::ShapeVersion);
}

} // namespace QelMox
