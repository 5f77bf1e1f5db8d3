#include <Qel/Mox/Geometry.h>

#include <Qel/Exception/Throw.h>
#include <Qel/Mox/Format.h>
#include <Qel/Mox/Tree.h>
#include <Qel/Tnf/TnFile.h>

#include <utility>

namespace QelMox {

namespace {

// A type of all ones means "not known" and gets no tag.
unsigned int taggedType(const DatasetEntry& entry) {
    const auto type = static_cast<unsigned int>(entry.variableType);
    return type == ~0U ? type : type | (entry.values.elementTag << Format::ElementTagShift);
}

void putLink(QelTnf::Index& index, const std::string& lightData, const DatasetEntry& entry) {
    index.Put(lightData, entry.linkNodeId);
    index.Put(lightData, entry.linkIndex);
}

void putSize(QelTnf::Index& index, const std::string& lightData, const NumericArray& values) {
    index.Put(lightData, static_cast<int>(static_cast<unsigned int>(values.sizeInBytes)));
    index.Put(lightData, values.GetWidth());
}

void putFixedFields(QelTnf::Index& index, const std::string& lightData, const NumericArray& values) {
    index.Put(lightData, values.boolA);
    index.Put(lightData, values.boolB);
    index.Put(lightData, values.floatA);
    index.Put(lightData, values.floatB);
    index.Put(lightData, values.boolC);
}

void putPosition(QelTnf::Index& index, const std::string& lightData, std::uint64_t position,
                 const std::string& version) {
    if (version == Format::GeometryVersion) {
        index.Put(lightData, position);
    } else {
        // Kept though nothing calls it; see docs/oddities.md.
        index.Put(lightData, static_cast<unsigned int>(position));
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

void Geometry::WriteTn(QelTnf::TnFile& container, const std::string& lightData, const std::string& heavyData,
                       const std::string& attributes) const {
    const std::string version = GetVersion();
    if (version != Format::GeometryVersion && version != Format::GeometryWithNarrowPositions &&
        version != Format::GeometryWithNumbers) {
        WriteTn_l05(container, lightData, heavyData, attributes);
        return;
    }
    QelTnf::Index& index = container.GetIndex();
    index.Put(lightData, static_cast<int>(datasets_.size()));
    for (const auto& dataset : datasets_) {
        const DatasetEntry& entry = *dataset;
        index.Put(lightData, entry.key);
        index.Put(lightData, taggedType(entry));
        index.Put(lightData, entry.isLink);
        if (entry.isLink) {
            putLink(index, lightData, entry);
        } else {
            putSize(index, lightData, entry.values);
            putFixedFields(index, lightData, entry.values);
            const auto position = positions.find(entry.key);
            if (position == positions.end()) {
                QEL_THROW(Qel::Exception::KeyNotFound());
            }
            putPosition(index, lightData, position->second, version);
            if (version == Format::GeometryWithNumbers) {
                // Kept though nothing calls it; see docs/oddities.md.
                index.Put(heavyData, entry.values.data, entry.values.sizeInBytes);
            }
        }
        index.Put(lightData, entry.vibration);
        Tree::WriteAttributes(container, attributes, entry.attributes);
    }
}

// Kept though nothing calls it; see docs/oddities.md.
void Geometry::WriteTn_l05(QelTnf::TnFile& container, const std::string& lightData, const std::string&,
                           const std::string& attributes) const {
    QelTnf::Index& index = container.GetIndex();
    index.Put(lightData, static_cast<int>(datasets_.size()));
    for (const auto& dataset : datasets_) {
        const DatasetEntry& entry = *dataset;
        index.Put(lightData, entry.key);
        index.Put(lightData, entry.variableType);
        putSize(index, lightData, entry.values);
        const auto position = positions.find(entry.key);
        if (position == positions.end()) {
            QEL_THROW(Qel::Exception::KeyNotFound());
        }
        putFixedFields(index, lightData, entry.values);
        index.Put(lightData, entry.vibration);
        Tree::WriteAttributes(container, attributes, entry.attributes);
        index.Put(lightData, position->second);
    }
}

} // namespace QelMox
