#pragma once

#include <Qel/Mox/Node.h>

#include <array>
#include <string>
#include <vector>

namespace QelMox {

/// The looks of a shape. Never a node of the tree by itself: each shape has one of its own.
class Material : public Node {
public:
    /// Red, green, blue and alpha.
    using Color = std::array<float, 4>;

    explicit Material(std::string materialName);

    std::string GetTypeName() const override;
    std::string GetVersion() const override;
    /// The version that the material's record is written with.
    virtual std::string GetRecordVersion() const;

    /// Takes red, green and blue. A fourth value is accepted, and alpha stays all the same.
    /// @throws Qel::Exception::InvalidArguments "invalid array size" unless there are 3 or 4 values.
    void SetDiffuseColor(const std::vector<float>& values);
    /// As SetDiffuseColor().
    void SetSpecularColor(const std::vector<float>& values);
    /// Takes red, green and blue.
    /// @throws Qel::Exception::InvalidArguments "invalid array size" unless there are 3 values.
    void SetEmissiveColor(const std::vector<float>& values);
    /// As SetEmissiveColor().
    void SetAmbientColor(const std::vector<float>& values);

    void SetTransparency(float value) { Transparency = value; }
    void SetShininess(float value) { Shininess = value; }
    /// Makes the ambient colour the diffuse one times `intensity`, in all four components.
    void SetAmbientIntensity(float intensity);

    const Color& GetDiffuse() const { return diffuse; }
    const Color& GetSpecular() const { return specular; }
    const Color& GetEmissive() const { return emissive; }
    const Color& GetAmbient() const { return ambient; }
    float GetTransparency() const { return Transparency; }
    float GetShininess() const { return Shininess; }
    unsigned char GetMaterialFlag() const { return materialFlag; }

private:
    static constexpr float DefaultAmbientIntensity = 0.2F;

    Color diffuse = {0.8F, 0.8F, 0.8F, 1.0F};
    Color specular = {0.0F, 0.0F, 0.0F, 1.0F};
    Color emissive = {0.0F, 0.0F, 0.0F, 0.0F};
    // The product in single precision, which is another number than 0.16.
    Color ambient = {diffuse[0] * DefaultAmbientIntensity, diffuse[1] * DefaultAmbientIntensity,
                     diffuse[2] * DefaultAmbientIntensity, diffuse[3] * DefaultAmbientIntensity};
    float Transparency = 0.0F;
    float Shininess = 0.2F;
    unsigned char materialFlag = 1;
};

} // namespace QelMox
