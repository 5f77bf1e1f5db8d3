#pragma once

#include <Qel/Mox/DatasetEntry.h>
#include <Qel/Mox/Node.h>
#include <Qel/Mox/VariableType.h>
#include <Qel/Util/HashTable.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace QelTnf {
class BlockStream;
}

namespace QelMox {

/// The node that holds the datasets of a shape: an entry for each, whose numbers are in the file.
class Geometry : public Node {
public:
    using VariableType = QelMox::VariableType;

    explicit Geometry(std::string name);

    std::string GetTypeName() const override;
    std::string GetVersion() const override;

    /// @return the index of the entry with this key, which is appended if there is none.
    std::uint64_t FindOrAddDataset(const std::string& key);

    /// Entries have indices from 0, in order of the first use of their keys.
    std::uint64_t GetDatasetCount() const { return datasets_.size(); }
    DatasetEntry& GetDataset(std::uint64_t index) { return *datasets_[static_cast<std::size_t>(index)]; }
    const DatasetEntry& GetDataset(std::uint64_t index) const {
        return *datasets_[static_cast<std::size_t>(index)];
    }

    /// Takes their position from all entries.
    void ForgetPositions();

    /// Puts all entries into the file's blocks, in the layout of GetVersion().
    /// @throws Qel::Exception::KeyNotFound for an entry that needs a position and has none.
    virtual void WriteTn(QelTnf::BlockStream& lightData, QelTnf::BlockStream& heavyData,
                         QelTnf::BlockStream& attributes) const;

    /// The layout of the versions before "0.5": without links, and without the type of the elements.
    /// @throws Qel::Exception::KeyNotFound for an entry without a position.
    void WriteTn_l05(QelTnf::BlockStream& lightData, QelTnf::BlockStream& heavyData,
                     QelTnf::BlockStream& attributes) const;

private:
    std::optional<std::uint64_t> FindDataset(const std::string& key);
    std::optional<std::uint64_t> WalkTo(const std::string& key) const;
    void IndexNewDatasets();

    std::vector<std::unique_ptr<DatasetEntry>> datasets_;
    // The indices of the entries by the hashes of their keys, made when there are many. Entries that were added
    // after the last search are missing.
    std::unique_ptr<QelUtil::HashTable> indices_;
};

} // namespace QelMox
