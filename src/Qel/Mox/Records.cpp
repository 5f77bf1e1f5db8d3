// Puts the model's records into blocks. The container itself knows only their names.

#include <Qel/Mox/Format.h>
#include <Qel/Mox/Material.h>
#include <Qel/Mox/ModifierInfo.h>
#include <Qel/Mox/ResultAttributes.h>
#include <Qel/Mox/VariableType.h>
#include <Qel/Tnf/Block.h>
#include <Qel/Tnf/Index.inl>

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace QelTnf {

// Kept though nothing calls it; see docs/oddities.md.
template void Index::Put(const std::string&, const QelMox::VariableType&);
template void Index::Put(const std::string&, const QelMox::Material&);
template void Index::Put(const std::string&, const std::vector<QelMox::ModifierInfo>&);
template void Index::Put(const std::string&, const std::vector<QelMox::ResultAttributes>&);

namespace {

// A record consists of its size in bytes, its version and its fields: those of the first version, then those
// that each later version added, up to its own.
template <typename PutFirstFields, typename PutLaterFields>
void putRecord(Block& block, const std::string& version, PutFirstFields putFirstFields,
               PutLaterFields putLaterFields) {
    const std::uint32_t start = block.GetPosition();
    block.Append(std::uint32_t{0});
    block.Append(version);
    putFirstFields();
    for (const std::string_view rung : QelMox::Format::VersionLadder) {
        if (version == rung) {
            break;
        }
        putLaterFields(rung);
    }
    const std::uint32_t end = block.GetPosition();
    block.SetPosition(start);
    block.Append(end - start);
    block.SetPosition(end);
}

void putColor(Block& block, const QelMox::Material::Color& color) {
    block.Append(color.data(), sizeof(color));
}

} // namespace

void Block::Append(const QelMox::Material& material) {
    putRecord(
        *this, material.GetRecordVersion(),
        [&] {
            putColor(*this, material.GetDiffuse());
            putColor(*this, material.GetSpecular());
            putColor(*this, material.GetEmissive());
            putColor(*this, material.GetAmbient());
            Append(material.GetTransparency());
        },
        [&](std::string_view rung) {
            if (rung == QelMox::Format::MaterialWithoutShininess) {
                Append(material.GetShininess());
            } else if (rung == QelMox::Format::MaterialWithoutFlag) {
                Append(material.GetMaterialFlag());
            }
        });
}

void Block::Append(const QelMox::ModifierInfo& info) {
    putRecord(
        *this, std::string(QelMox::Format::ModifierInfoVersion),
        [&] {
            Append(info.SourceName);
            Append(info.SourceVersion);
            Append(info.FormatVersion);
            Append(info.Date);
            Append(info.Computer);
            Append(info.User);
            Append(info.Comment);
        },
        [](std::string_view) {});
}

void Block::Append(const std::vector<QelMox::ModifierInfo>& infos) {
    Append(static_cast<std::uint32_t>(infos.size()));
    for (const QelMox::ModifierInfo& info : infos) {
        Append(info);
    }
}

// The elements have no layout in the file; the list is always empty.
void Block::Append(const std::vector<QelMox::ResultAttributes>& attributes) {
    Append(static_cast<std::uint32_t>(attributes.size()));
}

} // namespace QelTnf
