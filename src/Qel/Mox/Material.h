#pragma once

#include <Qel/Mox/Node.h>

#include <array>
#include <string>
#include <vector>

namespace QelMox {

/// The appearance of a shape. Never a node of the tree itself: each shape has a material of its own.
class Material : public Node {
public:
    /// Red, green, blue and alpha.
    using Color = std::array<float, 4>;

    explicit Material(std::string name);

    std::string GetTypeName() const override;
    std::string GetVersion() const override;
    /// The version that the material's record is written with.
    virtual std::string GetRecordVersion() const;

    /// Takes red, green and blue. A fourth value is accepted but ignored: alpha stays as it is.
    /// @throws Qel::Exception::InvalidArguments "invalid array size" unless there are 3 or 4 values.
    void SetDiffuseColor(const std::vector<float>& values);
    /// As SetDiffuseColor().
    void SetSpecularColor(const std::vector<float>& values);
    /// Takes red, green and blue.
    /// @throws Qel::Exception::InvalidArguments "invalid array size" unless there are 3 values.
    void SetEmissiveColor(const std::vector<float>& values);
    /// As SetEmissiveColor().
    void SetAmbientColor(const std::vector<float>& values);

    void SetTransparency(float value) { Transparency_ = value; }
    void SetShininess(float value) { Shininess_ = value; }
    /// Takes all four values of each colour, as a file has them.
    void SetColors(const Color& diffuse, const Color& specular, const Color& emissive, const Color& ambient);
    /// Sets the ambient colour to the diffuse colour times `intensity`, in all four components.
    void SetAmbientIntensity(float intensity);

    const Color& GetDiffuse() const { return diffuse_; }
    const Color& GetSpecular() const { return specular_; }
    const Color& GetEmissive() const { return emissive_; }
    const Color& GetAmbient() const { return ambient_; }
    float GetTransparency() const { return Transparency_; }
    float GetShininess() const { return Shininess_; }
    unsigned char GetMaterialFlag() const { return materialFlag_; }

private:
    static constexpr float DefaultAmbientIntensity = 0.2F;

    Color diffuse_ = {0.8F, 0.8F, 0.8F, 1.0F};
    Color specular_ = {0.0F, 0.0F, 0.0F, 1.0F};
    Color emissive_ = {0.0F, 0.0F, 0.0F, 0.0F};
    // The product in single precision, which differs from 0.16.
    Color ambient_ = {diffuse_[0] * DefaultAmbientIntensity, diffuse_[1] * DefaultAmbientIntensity,
                      diffuse_[2] * DefaultAmbientIntensity, diffuse_[3] * DefaultAmbientIntensity};
    float Transparency_ = 0.0F;
    float Shininess_ = 0.2F;
    unsigned char materialFlag_ = 1;
};

} // namespace QelMox
