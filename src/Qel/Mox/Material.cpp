#include <Qel/Mox/Material.h>

#include <Qel/Exception/Throw.h>
#include <Qel/Mox/Format.h>

#include <algorithm>
#include <utility>

namespace QelMox {

namespace {

constexpr std::size_t WithoutAlpha = 3;
constexpr std::size_t WithAlpha = 4;

void copyWithoutAlpha(const std::vector<float>& values, Material::Color& color) {
    std::copy_n(values.begin(), WithoutAlpha, color.begin());
}

} // namespace

Material::Material(std::string name) : Node(std::move(name)) {}

// Kept though nothing calls it; see docs/oddities.md.
std::string Material::GetTypeName() const {
    return std::string(Format::MaterialType);
}

// Kept though nothing calls it; see docs/oddities.md.
std::string Material::GetVersion() const {
    return std::string(Format::MaterialVersion);
}

std::string Material::GetRecordVersion() const {
    return std::string(Format::MaterialVersion);
}

void Material::SetDiffuseColor(const std::vector<float>& values) {
    if (values.size() != WithoutAlpha && values.size() != WithAlpha) {
        QEL_THROW(Qel::Exception::InvalidArguments("invalid array size"));
    }
    copyWithoutAlpha(values, diffuse_);
}

void Material::SetSpecularColor(const std::vector<float>& values) {
    if (values.size() != WithoutAlpha && values.size() != WithAlpha) {
        QEL_THROW(Qel::Exception::InvalidArguments("invalid array size"));
    }
    copyWithoutAlpha(values, specular_);
}

void Material::SetEmissiveColor(const std::vector<float>& values) {
    if (values.size() != WithoutAlpha) {
        QEL_THROW(Qel::Exception::InvalidArguments("invalid array size"));
    }
    copyWithoutAlpha(values, emissive_);
}

void Material::SetAmbientColor(const std::vector<float>& values) {
    if (values.size() != WithoutAlpha) {
        QEL_THROW(Qel::Exception::InvalidArguments("invalid array size"));
    }
    copyWithoutAlpha(values, ambient_);
}

void Material::SetColors(const Color& diffuse, const Color& specular, const Color& emissive,
                         const Color& ambient) {
    diffuse_ = diffuse;
    specular_ = specular;
    emissive_ = emissive;
    ambient_ = ambient;
}

void Material::SetAmbientIntensity(float intensity) {
    std::ranges::transform(diffuse_, ambient_.begin(),
                           [=](float component) { return component * intensity; });
}

} // namespace QelMox
