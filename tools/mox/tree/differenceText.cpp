#include "differenceText.h"

#include "../common/numberText.h"

#include <fmt/format.h>

#include <bit>
#include <span>
#include <vector>

namespace MoxTool {

namespace {

// The default diffuse colour at a fifth of its strength, rounded as the writer does it.
constexpr float DefaultAmbient = std::bit_cast<float>(0x3E23D70BU);

class Differences {
public:
    void compare(const char* name, std::span<const float> values, std::initializer_list<float> defaults) {
        if (std::equal(values.begin(), values.end(), defaults.begin(), defaults.end())) {
            return;
        }
        std::string text = name;
        for (const float value : values) {
            text += ' ';
            text += numberText(value);
        }
        found_.push_back(text);
    }
    void compare(const char* name, float value, float usual) { compare(name, std::span(&value, 1), {usual}); }
    void compare(const char* name, std::uint8_t value, std::uint8_t usual) {
        if (value != usual) {
            found_.push_back(fmt::format("{} {}", name, value));
        }
    }
    std::string text() const { return fmt::format("{}", fmt::join(found_, ", ")); }

private:
    std::vector<std::string> found_;
};

} // namespace

std::string differenceText(const MoxReader::Group& group) {
    Differences differences;
    differences.compare("translation", group.translation, {0, 0, 0});
    differences.compare("rotation", group.rotation, {0, 0, 1, 0});
    differences.compare("scale", group.scale, {1, 1, 1});
    differences.compare("kind", group.kind, 0);
    return differences.text();
}

std::string differenceText(const MoxReader::Material& material) {
    Differences differences;
    differences.compare("diffuse", material.diffuse, {0.8F, 0.8F, 0.8F, 1});
    differences.compare("specular", material.specular, {0, 0, 0, 1});
    differences.compare("emissive", std::span(material.emissive).first(3), {0, 0, 0});
    differences.compare("ambient", material.ambient, {DefaultAmbient, DefaultAmbient, DefaultAmbient, 0.2F});
    differences.compare("transparency", material.transparency, 0.0F);
    differences.compare("shininess", material.shininess, 0.2F);
    differences.compare("flag", material.flag, 1);
    return differences.text();
}

} // namespace MoxTool
