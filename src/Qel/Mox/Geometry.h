#pragma once

#include <Qel/Mox/DatasetEntry.h>
#include <Qel/Mox/Node.h>
#include <Qel/Mox/VariableType.h>

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
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
    DatasetEntry& GetDataset(std::uint64_t index) { return *datasets_[index]; }
    const DatasetEntry& GetDataset(std::uint64_t index) const { return *datasets_[index]; }

    /// The position of each key's numbers in the stream of the datasets.
    std::map<std::string, std::uint64_t> positions;

    /// Puts all entries into the file's blocks, in the layout of GetVersion().
    /// @throws Qel::Exception::KeyNotFound for an entry that needs a position and has none.
    void WriteTn(QelTnf::BlockStream& lightData, QelTnf::BlockStream& heavyData,
                 QelTnf::BlockStream& attributes) const;

    /// The layout of the versions before "0.5": without links, and without the type of the elements.
    /// @throws Qel::Exception::KeyNotFound for an entry without a position.
    void WriteTn_l05(QelTnf::BlockStream& lightData, QelTnf::BlockStream& heavyData,
                     QelTnf::BlockStream& attributes) const;

private:
    std::vector<std::unique_ptr<DatasetEntry>> datasets_;
    // The keys are views of those in the entries, which therefore never move.
    std::unordered_map<std::string_view, std::uint64_t> indices_;
};

} // namespace QelMox
