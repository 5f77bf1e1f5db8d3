#pragma once

#include <Qel/Mox/Material.h>
#include <Qel/Mox/Node.h>

#include <memory>
#include <string>

namespace QelMox {

/// A shape of the assembly: a material, and below it a Geometry.
class Shape final : public Node {
public:
    /// A shape whose material has the default appearance and no name.
    explicit Shape(std::string name);

    std::string GetTypeName() const override;
    std::string GetVersion() const override;

    /// The shape's material, which only the shape itself changes.
    const Material& GetMaterial() const;
    Material& GetMaterial();

private:
    // Null as long as nobody has asked for a material to change: shapes with the default one share it.
    std::unique_ptr<Material> material_;
};

} // namespace QelMox
