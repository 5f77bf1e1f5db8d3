#include <Qel/Mox/Geometry.h>

#include <Qel/Exception/Throw.h>
#include <Qel/Mox/Format.h>
#include <Qel/Mox/Tree.h>
#include <Qel/Tnf/BlockStream.h>

#include <algorithm>
#include <functional>
#include <utility>

namespace QelMox {

namespace {

// Up to so many entries a walk along them takes no longer than a search, and needs no memory.
constexpr std::size_t FewDatasets = 8;

std::size_t hashOf(const std::string& key) {
    return std::hash<std::string>()(key);
}

// A type of all ones means "not known" and gets no tag.
unsigned int taggedType(const DatasetEntry& entry) {
    const auto type = static_cast<unsigned int>(entry.variableType);
    return type == ~0U ? type : type | (entry.values.elementTag << Format::ElementTagShift);
}

void putLink(QelTnf::BlockStream& lightData, const DatasetEntry& entry) {
    lightData.Put(entry.linkNodeId);
    lightData.Put(entry.linkIndex);
}

void putSize(QelTnf::BlockStream& lightData, const NumericArray& values) {
    lightData.Put(static_cast<int>(static_cast<unsigned int>(values.sizeInBytes)));
    lightData.Put(values.GetWidth());
}

void putFixedFields(QelTnf::BlockStream& lightData, const NumericArray& values) {
    lightData.Put(values.boolA);
    lightData.Put(values.boolB);
    lightData.Put(values.floatA);
    lightData.Put(values.floatB);
    lightData.Put(values.boolC);
}

void putPosition(QelTnf::BlockStream& lightData, std::uint64_t position, const std::string& version) {
    if (version == Format::GeometryVersion) {
        lightData.Put(position);
    } else {
        // Kept though nothing calls it; see docs/oddities.md.
        lightData.Put(static_cast<unsigned int>(position));
    }
}

} // namespace

Geometry::Geometry(std::string name) : Node(std::move(name)) {}

std::string Geometry::GetTypeName() const {
    return std::string(Format::GeometryType);
}

// The comparison can't succeed with the present file version: all files have 64-bit positions.
std::string Geometry::GetVersion() const {
    return std::string(Format::FileVersion == Format::NarrowFileVersion ? Format::GeometryWithNarrowPositions
                                                                        : Format::GeometryVersion);
}

std::uint64_t Geometry::FindOrAddDataset(const std::string& key) {
    if (const std::optional<std::uint64_t> found = FindDataset(key)) {
        return *found;
    }
    auto entry = std::make_unique<DatasetEntry>();
    entry->key = key;
    datasets_.push_back(std::move(entry));
    return datasets_.size() - 1;
}

std::optional<std::uint64_t> Geometry::FindDataset(const std::string& key) {
    if (datasets_.size() <= FewDatasets) {
        return WalkTo(key);
    }
    IndexNewDatasets();
    std::optional<std::uint64_t> found;
    indices_->Visit(hashOf(key), [&](std::uint32_t index) {
        if (datasets_[index]->key == key) {
            found = index;
        }
    });
    return found;
}

std::optional<std::uint64_t> Geometry::WalkTo(const std::string& key) const {
    const auto match =
        std::ranges::find(datasets_, key, [](const auto& entry) -> const std::string& { return entry->key; });
    return match == datasets_.end() ? std::nullopt : std::optional<std::uint64_t>(match - datasets_.begin());
}

void Geometry::IndexNewDatasets() {
    if (indices_ == nullptr) {
        indices_ = std::make_unique<QelUtil::HashTable>();
    }
    for (std::size_t index = indices_->GetCount(); index < datasets_.size(); ++index) {
        indices_->Add(hashOf(datasets_[index]->key), static_cast<std::uint32_t>(index));
    }
}

void Geometry::ForgetPositions() {
    for (const auto& entry : datasets_) {
        entry->position.reset();
    }
}

void Geometry::WriteTn(QelTnf::BlockStream& lightData, QelTnf::BlockStream& heavyData,
                       QelTnf::BlockStream& attributes) const {
    const std::string version = GetVersion();
    if (version != Format::GeometryVersion && version != Format::GeometryWithNarrowPositions &&
        version != Format::GeometryWithNumbers) {
        WriteTn_l05(lightData, heavyData, attributes);
        return;
    }
    lightData.Put(static_cast<int>(datasets_.size()));
    for (const auto& dataset : datasets_) {
        const DatasetEntry& entry = *dataset;
        lightData.Put(entry.key);
        lightData.Put(taggedType(entry));
        lightData.Put(entry.isLink);
        if (entry.isLink) {
            putLink(lightData, entry);
        } else {
            putSize(lightData, entry.values);
            putFixedFields(lightData, entry.values);
            if (!entry.position) {
                QEL_THROW(Qel::Exception::KeyNotFound());
            }
            putPosition(lightData, *entry.position, version);
            if (version == Format::GeometryWithNumbers) {
                // Kept though nothing calls it; see docs/oddities.md.
                heavyData.Put(entry.values.data, static_cast<std::uint32_t>(entry.values.sizeInBytes));
            }
        }
        lightData.Put(entry.vibration);
        Tree::WriteAttributes(attributes, entry.attributes);
    }
}

// Kept though nothing calls it; see docs/oddities.md.
void Geometry::WriteTn_l05(QelTnf::BlockStream& lightData, QelTnf::BlockStream&,
                           QelTnf::BlockStream& attributes) const {
    lightData.Put(static_cast<int>(datasets_.size()));
    for (const auto& dataset : datasets_) {
        const DatasetEntry& entry = *dataset;
        lightData.Put(entry.key);
        lightData.Put(entry.variableType);
        putSize(lightData, entry.values);
        if (!entry.position) {
            QEL_THROW(Qel::Exception::KeyNotFound());
        }
        putFixedFields(lightData, entry.values);
        lightData.Put(entry.vibration);
        Tree::WriteAttributes(attributes, entry.attributes);
        lightData.Put(*entry.position);
    }
}

} // namespace QelMox
