#pragma once

#include "../common/JsonStream.h"

#include <MoxReader/Error.h>
#include <MoxReader/HeavyData.h>

#include <functional>
#include <optional>

namespace MoxTool {

/// A model as JSON, in the form of docs/format/dump.md. Holds the numbers of one dataset at a time.
class ModelDump {
public:
    struct Options {
        bool numbers = false;
        bool noDate = false;
        bool storage = false;
    };

    /// All arguments must outlive this object.
    ModelDump(const MoxReader::File& file, const MoxReader::Model& model, const Options& options,
              JsonStream& json);

    /// What can't be read shows as such; see damage().
    /// @param progress Called with the share that is done, from 0 to 1.
    /// @throws MoxReader::Error ReadFailed alone; what precedes it has been written then.
    void write(const std::function<void(double)>& progress = [](double) {});

    /// Why the first of the parts that the options ask for can't be read; empty if all could be.
    const std::optional<MoxReader::Error>& damage() const { return damage_; }

private:
    void writeSaves();
    void writeBlocks();
    void writeStreams();
    void writeStream(const std::string& name);
    void writeNode(const MoxReader::Node& node);
    void writeNodeStorage(const MoxReader::Node& node);
    void write(const MoxReader::Group& group);
    void write(const MoxReader::Shape& shape);
    void write(const MoxReader::Geometry& geometry);
    void write(const MoxReader::NodeSets& descriptor);
    void write(std::monostate) {}
    void writeDataset(const MoxReader::Dataset& dataset);
    void writeLink(const MoxReader::Dataset& link);
    void writeHolder(const MoxReader::Dataset& dataset);
    void writeAttributes(const MoxReader::Attributes& attributes);
    void writeNumbers(const MoxReader::Dataset& dataset);
    void writeUnreadable(const MoxReader::Error& error);
    /// Returns the name of what is wrong.
    std::string_view noteDamage(const MoxReader::Error& error);
    void member(std::string_view key, const Json& value);
    void rawMember(std::string_view key, std::string_view text);

    const MoxReader::File& file_;
    const MoxReader::Model& model_;
    const Options& options_;
    JsonStream& json_;
    MoxReader::HeavyData heavy_;
    std::optional<MoxReader::Error> damage_;
};

} // namespace MoxTool
