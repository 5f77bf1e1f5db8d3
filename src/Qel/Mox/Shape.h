#pragma once

#include <Qel/Mox/Material.h>
#include <Qel/Mox/Node.h>

#include <string>

namespace QelMox {

/// A shape of the assembly: a material, and below it a Geometry.
class Shape final : public Node {
public:
    /// A shape whose material has the default appearance and no name.
    explicit Shape(std::string name);

    std::string GetTypeName() const override;
    std::string GetVersion() const override;

    const Material& GetMaterial() const { return material_; }
    Material& GetMaterial() { return material_; }

private:
    Material material_;
};

} // namespace QelMox
