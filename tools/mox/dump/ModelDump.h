#pragma once

#include "../common/JsonStream.h"
#include "../common/OpenModel.h"

#include <MoxReader/HeavyData.h>

namespace MoxTool {

class Terminal;

/// A model as JSON. Holds the numbers of one dataset at a time.
class ModelDump {
public:
    struct Options {
        bool numbers = false;
        bool noDate = false;
    };

    /// All arguments must outlive this object.
    ModelDump(const OpenModel& opened, const Options& options, JsonStream& json);

    /// @param terminal For the progress.
    /// @throws MoxReader::Error if numbers can't be read; what precedes them has been written then.
    void write(Terminal& terminal);

private:
    void writeSaves();
    void writeNode(const MoxReader::Node& node);
    void write(const MoxReader::Group& group);
    void write(const MoxReader::Shape& shape);
    void write(const MoxReader::Geometry& geometry);
    void write(const MoxReader::NodeSets& descriptor);
    void write(std::monostate) {}
    void writeDataset(const MoxReader::Dataset& dataset);
    void writeHolder(const MoxReader::Dataset& dataset);
    void writeAttributes(const MoxReader::Attributes& attributes);
    void writeNumbers(const MoxReader::Dataset& dataset);
    void member(std::string_view key, const Json& value);

    const OpenModel& opened_;
    const Options& options_;
    JsonStream& json_;
    MoxReader::HeavyData heavy_;
};

} // namespace MoxTool
