#include <Qel/Mox/Geometry.h>

#include <Qel/Exception/Throw.h>
#include <Qel/Mox/Format.h>
#include <Qel/Mox/Tree.h>
#include <Qel/Tnf/BlockStream.h>

#include <utility>

namespace QelMox {

namespace {

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
    if (const auto found = indices_.find(key); found != indices_.end()) {
        return found->second;
    }
    const std::uint64_t added = datasets_.size();
    auto entry = std::make_unique<DatasetEntry>();
    entry->key = key;
    datasets_.push_back(std::move(entry));
    try {
        indices_.emplace(datasets_.back()->key, added);
    } catch (...) {
        datasets_.pop_back();
        throw;
    }
    return added;
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
            const auto position = positions.find(entry.key);
            if (position == positions.end()) {
                QEL_THROW(Qel::Exception::KeyNotFound());
            }
            putPosition(lightData, position->second, version);
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
        const auto position = positions.find(entry.key);
        if (position == positions.end()) {
            QEL_THROW(Qel::Exception::KeyNotFound());
        }
        putFixedFields(lightData, entry.values);
        lightData.Put(entry.vibration);
        Tree::WriteAttributes(attributes, entry.attributes);
        lightData.Put(position->second);
    }
}

} // namespace QelMox
